#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

namespace platform
{

class Bundle;

/// A window or view from "<name>.ui", looked for in the host's resources first, then in the owner's bundle. A widget's
/// objectName is its outlet; its dynamic property "action" names a selector of the owner, sent with the widget as
/// sender. Texts are localized. Everything that is missing is logged by name and kept in errors(). Main thread.
///
///     InterfaceFile file("QWManual", Bundle::forClassOf(*this), *this);
///     file.connectOutlet("window", m_window);
///     if (!file.isComplete())
///         return;
///     m_root = file.takeWidget();
class QWPLATFORM_EXPORT InterfaceFile
{
public:
    /// Loads at once. @p owner is not owned and must outlive the widgets that send it actions.
    InterfaceFile(const QString &name, const Bundle &bundle, QObject &owner, QWidget *parent = nullptr);

    /// Destroys the widget unless it was taken or has a parent.
    ~InterfaceFile();

    InterfaceFile(const InterfaceFile &) = delete;
    InterfaceFile &operator=(const InterfaceFile &) = delete;

    /// The outermost widget; null when the file could not be loaded, or when it was taken.
    QWidget *widget() const;

    /// Hands widget() over; outlets stay connected from then on, whatever is missing.
    std::unique_ptr<QWidget> takeWidget();

    /// Sets @p outlet to the widget (or action, or layout) named @p name; null, and an error, when there is none or it
    /// is of another class.
    template <class T>
    void connectOutlet(const QString &name, T *&outlet)
    {
        QObject *const found = _find(name, T::staticMetaObject);
        outlet = qobject_cast<T *>(found);
        _clearIfIncomplete([&outlet] { outlet = nullptr; });
    }

    /// True while nothing was missing. Otherwise all outlets, which live still, are null again, since their widgets go
    /// with this; not when the widget was taken, which keeps them.
    bool isComplete() const;

    /// One line for everything that was missing, in English, for the log; empty when nothing was.
    const QStringList &errors() const;

    /// Makes a custom widget as a child of @p parent, which may be null.
    using Factory = std::function<QWidget *(QWidget *parent)>;

    /// Makes custom widgets of class @p className (as the file spells it) from now on, for the whole process.
    static void registerClass(const QString &className, Factory factory);

    /// The same for a class @p T whose constructor takes the parent.
    template <class T>
    static void registerClass(const QString &className)
    {
        registerClass(className, [](QWidget *parent) -> QWidget * { return new T(parent); });
    }

private:
    QObject *_find(const QString &name, const QMetaObject &type);
    void _clearIfIncomplete(std::function<void()> clear);

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace platform
