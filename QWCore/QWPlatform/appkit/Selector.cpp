#include "Selector.h"

#include <QHash>
#include <QMetaMethod>

#include <array>
#include <dlfcn.h>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace platform
{

struct Selector::Entry
{
    QString name;
    QByteArray methodName;
    int argumentCount;

    /// The method of one class that one way of calling performs.
    struct Answer
    {
        const QMetaObject *type;
        const QMetaType *types;
        int result; ///< Type id; 0 when the result is dropped.
        int index;
    };
    /// What was found before; main thread only. Few classes are asked, and those of one responder chain together.
    mutable std::vector<Answer> answers;
};

namespace
{
/// Qt's own slots that a selector may reach: whatever else a file names, such as "deleteLater", stays out of reach.
constexpr std::array<std::string_view, 6> reachableQtSlots{"undo", "redo", "cut", "copy", "paste", "selectAll"};

constexpr int NoMethod = -1;

QByteArray methodNameOf(const QString &selector)
{
    QByteArray name;
    const QStringList pieces = selector.split(':');
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        QByteArray piece = pieces.at(i).toUtf8();
        if (i > 0 && !piece.isEmpty())
            piece[0] = static_cast<char>(toupper(static_cast<unsigned char>(piece[0])));
        name += piece;
    }
    return name;
}

/// Asks which library the class's code lies in: its meta-object itself may have been copied into the executable.
bool isQtsOwn(const QMetaObject &type)
{
    Dl_info info;
    if (!type.d.static_metacall || !dladdr(reinterpret_cast<const void *>(type.d.static_metacall), &info))
        return false;
    const std::string_view path(info.dli_fname);
    return path.substr(path.rfind('/') + 1).starts_with("libQt6");
}

bool isReachableQtSlot(const QMetaMethod &method)
{
    const QByteArray name = method.name();
    const auto &names = reachableQtSlots;
    return method.parameterCount() == 0 && std::find(names.begin(), names.end(), name.toStdString()) != names.end();
}

bool isCallable(const QMetaMethod &method)
{
    const bool kind = method.methodType() == QMetaMethod::Method || method.methodType() == QMetaMethod::Slot;
    return kind && method.access() == QMetaMethod::Public;
}

bool hasTypes(const QMetaMethod &method, const SelectorCall &call)
{
    if (call.result.isValid() && method.returnMetaType() != call.result)
        return false;
    for (int i = 0; i < call.count; ++i) {
        if (method.parameterMetaType(i) != call.types[i])
            return false;
    }
    return true;
}

/// A sender is dropped on the way to one of Qt's own slots: "copy:" performs copy().
bool takesAsQtSlot(const QMetaMethod &method, const SelectorCall &call)
{
    static const QMetaType sender = QMetaType::fromType<QObject *>();
    const bool dropsOnlySender = call.count == 0 || (call.count == 1 && call.types[0] == sender);
    return dropsOnlySender && !call.result.isValid() && isReachableQtSlot(method);
}

bool matches(const QMetaMethod &method, const Selector &selector, const SelectorCall &call)
{
    if (method.name() != selector.methodName() || !isCallable(method))
        return false;
    if (isQtsOwn(*method.enclosingMetaObject()))
        return takesAsQtSlot(method, call);
    return method.parameterCount() == call.count && hasTypes(method, call);
}

/// The most derived class is asked first.
int findMethod(const QMetaObject &type, const Selector &selector, const SelectorCall &call)
{
    for (int index = type.methodCount() - 1; index >= 0; --index) {
        if (matches(type.method(index), selector, call))
            return index;
    }
    return NoMethod;
}
} // namespace

const Selector::Entry *Selector::_interned(const QString &name)
{
    static std::mutex mutex;                                                // guards the table
    static auto &table = *new QHash<QString, std::shared_ptr<const Entry>>; // never destroyed: selectors point into it
    const std::lock_guard lock(mutex);
    auto &entry = table[name];
    if (!entry)
        entry = std::make_shared<const Entry>(Entry{name, methodNameOf(name), static_cast<int>(name.count(':')), {}});
    return entry.get();
}

Selector::Selector(const QString &name)
    : m_entry(name.isEmpty() ? nullptr : _interned(name))
{
}

Selector::Selector(const char *name)
    : Selector(QString::fromUtf8(name))
{
}

const QString &Selector::name() const
{
    static const QString none;
    return m_entry ? m_entry->name : none;
}

int Selector::argumentCount() const
{
    return m_entry ? m_entry->argumentCount : 0;
}

const QByteArray &Selector::methodName() const
{
    static const QByteArray none;
    return m_entry ? m_entry->methodName : none;
}

/// Index of the method of @p type that @p call performs, or NoMethod. Main thread.
int Selector::_methodIndex(const QMetaObject &type, const SelectorCall &call) const
{
    if (!m_entry || m_entry->argumentCount != call.count)
        return NoMethod;
    const int result = call.result.isValid() ? call.result.id() : 0;
    for (const Entry::Answer &answer : m_entry->answers) {
        if (answer.type == &type && answer.types == call.types && answer.result == result)
            return answer.index;
    }
    const int index = findMethod(type, *this, call); // meta-objects live as long as their libraries
    m_entry->answers.push_back({&type, call.types, result, index});
    return index;
}

bool performCall(QObject *target, const Selector &selector, const SelectorCall &call, void **arguments)
{
    const int index = target ? selector._methodIndex(*target->metaObject(), call) : NoMethod;
    if (index == NoMethod)
        return false;
    target->qt_metacall(QMetaObject::InvokeMetaMethod, index, arguments);
    return true;
}

bool respondsToCall(const QObject *target, const Selector &selector, const SelectorCall &call)
{
    return target && selector._methodIndex(*target->metaObject(), call) != NoMethod;
}

bool respondsTo(const QObject *target, const Selector &selector)
{
    if (selector.argumentCount() == 0)
        return respondsToCall(target, selector, {detail::typesOf<>(), 0, {}});
    return respondsToCall(target, selector, {detail::typesOf<QObject *>(), 1, {}});
}

} // namespace platform
