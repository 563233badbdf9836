#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QMetaType>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace platform
{

struct SelectorCall;

/// The name of an operation ("editShortcut:"), interned: copying and comparing cost a pointer. Its colons count the
/// arguments, and it maps to the invokable method whose name is its pieces joined, a capital after each colon
/// ("setState:atPosition:" is setStateAtPosition). Any thread may make one. A value of one pointer, which is compared
/// for every menu item and every responder, so it stays open.
class QWPLATFORM_EXPORT Selector
{
public:
    /// No selector; nothing responds to it.
    Selector() = default;

    /// An empty @p name gives no selector. Any other text is kept as it is, valid method name or not.
    Selector(const QString &name);
    Selector(const char *name); ///< The same from UTF-8.

    /// True for no selector.
    bool isNull() const { return !m_entry; }

    /// As given; "" for no selector.
    const QString &name() const;

    /// Number of colons.
    int argumentCount() const;

    /// Of the C++ method, without arguments.
    const QByteArray &methodName() const;

    /// True when the names are equal.
    bool operator==(const Selector &other) const = default;

    /// So that selectors can be keys of a QHash.
    friend size_t qHash(const Selector &selector, size_t seed = 0) { return ::qHash(selector.m_entry, seed); }

private:
    friend QWPLATFORM_EXPORT bool performCall(QObject *target, const Selector &selector, const SelectorCall &call,
                                              void **arguments);
    friend QWPLATFORM_EXPORT bool respondsToCall(const QObject *target, const Selector &selector,
                                                 const SelectorCall &call);

    struct Entry;
    int _methodIndex(const QMetaObject &type, const SelectorCall &call) const;
    static const Entry *_interned(const QString &name);

    const Entry *m_entry = nullptr;
};

/// What a call passes and expects; for Selector's own templates.
struct SelectorCall
{
    const QMetaType *types = nullptr; ///< Of the arguments; one array per list of types, so that it can be compared.
    int count = 0;                    ///< Of the arguments.
    QMetaType result;                 ///< Invalid: the result is dropped.
};

/// Calls the public invokable method of @p target behind @p selector, whose parameters have exactly the types of
/// @p call; false when there is none. Signals never match, and of Qt's own methods only the argument-less undo, redo,
/// cut, copy, paste and selectAll do (with or without the colon for the sender).
/// @p arguments is as for QObject::qt_metacall(). Main thread.
QWPLATFORM_EXPORT bool performCall(QObject *target, const Selector &selector, const SelectorCall &call,
                                   void **arguments);

/// True when performCall() would find a method. A null target responds to nothing.
QWPLATFORM_EXPORT bool respondsToCall(const QObject *target, const Selector &selector, const SelectorCall &call);

/// True when @p target takes @p selector as an action: no argument, or the sender (a QObject *).
QWPLATFORM_EXPORT bool respondsTo(const QObject *target, const Selector &selector);

/// @cond What the templates need.
namespace detail
{
template <class... Arguments>
const QMetaType *typesOf()
{
    static const std::array<QMetaType, sizeof...(Arguments) + 1> types{QMetaType::fromType<Arguments>()...,
                                                                       QMetaType()};
    return types.data();
}
} // namespace detail
/// @endcond

/// Calls @p selector with exactly these argument types; false when @p target has no such method.
template <class... Arguments>
bool perform(QObject *target, const Selector &selector, Arguments... arguments)
{
    void *pointers[] = {nullptr, &arguments...};
    return performCall(target, selector, {detail::typesOf<Arguments...>(), sizeof...(Arguments), {}}, pointers);
}

/// As perform(), with the method's result, which must have exactly the type @p Result.
template <class Result, class... Arguments>
std::optional<Result> performReturning(QObject *target, const Selector &selector, Arguments... arguments)
{
    Result result{};
    void *pointers[] = {&result, &arguments...};
    const SelectorCall call{detail::typesOf<Arguments...>(), sizeof...(Arguments), QMetaType::fromType<Result>()};
    return performCall(target, selector, call, pointers) ? std::optional<Result>(std::move(result)) : std::nullopt;
}

} // namespace platform
