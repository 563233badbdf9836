#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace platform
{

class Bundle;

/// A window or view from "<name>.ui", looked for in the host's resources first, then in the owner's bundle. A widget's
/// objectName is its outlet; its dynamic property "action" names a selector of the owner, sent with the widget as
/// sender. Texts are localized. Everything that is missing is logged by name and kept in errors().
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
    ~InterfaceFile();
    InterfaceFile(const InterfaceFile &) = delete;
    InterfaceFile &operator=(const InterfaceFile &) = delete;

    /// The outermost widget; null when the file could not be loaded. Destroyed with this unless taken or parented.
    QWidget *widget() const { return m_widget.get(); }
    std::unique_ptr<QWidget> takeWidget();

    /// Sets @p outlet to the widget (or action, or layout) named @p name; null, and an error, when there is none or it
    /// is of another class.
    template <class T>
    void connectOutlet(const QString &name, T *&outlet)
    {
        QObject *const found = _find(name, T::staticMetaObject);
        outlet = qobject_cast<T *>(found);
        m_outlets.push_back([&outlet] { outlet = nullptr; });
    }

    /// True while nothing was missing. Otherwise all outlets, which live still, are null again, since their widgets go
    /// with this; not when the widget was taken, which keeps them.
    bool isComplete() const;
    const QStringList &errors() const { return m_errors; }

    /// Makes custom widgets of class @p className (as the file spells it) from now on.
    using Factory = std::function<QWidget *(QWidget *parent)>;
    static void registerClass(const QString &className, Factory factory);
    template <class T>
    static void registerClass(const QString &className)
    {
        registerClass(className, [](QWidget *parent) -> QWidget * { return new T(parent); });
    }

private:
    QString _path(const QString &name, const Bundle &bundle);
    void _load(const QString &path, QWidget *parent);
    void _connectActions(QObject &owner);
    void _connectAction(QObject &control, QObject &owner);
    QObject *_find(const QString &name, const QMetaObject &type);
    void _fail(const QString &error);

    QString m_name;
    std::unique_ptr<QWidget> m_widget;
    QStringList m_errors;
    std::vector<std::function<void()>> m_outlets; ///< Each makes one null.
};

} // namespace platform
