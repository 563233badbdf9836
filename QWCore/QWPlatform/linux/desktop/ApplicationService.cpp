#include "ApplicationService.h"

#include <QApplication>
#include <QWidget>

namespace platform
{

namespace
{
/// The window to show when the user calls the application: the active one, else the last opened one.
QWidget *frontWindow()
{
    if (QWidget *active =
            QApplication::activeModalWidget() ? QApplication::activeModalWidget() : QApplication::activeWindow())
        return active;
    QWidget *last = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        if (window->isVisible() && (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog))
            last = window;
    return last;
}

void bringToFront()
{
    QWidget *window = qobject_cast<QApplication *>(QCoreApplication::instance()) ? frontWindow() : nullptr;
    if (!window)
        return;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
}
} // namespace

ApplicationService::ApplicationService(std::function<void(const QString &url)> received)
    : m_received(std::move(received))
{
}

void ApplicationService::Activate(const QVariantMap &)
{
    bringToFront();
}

void ApplicationService::Open(const QStringList &uris, const QVariantMap &)
{
    bringToFront();
    // From the loop and not from here: the caller waits for the answer, and the receiver may open a dialog.
    for (const QString &uri : uris)
        QMetaObject::invokeMethod(
            this, [this, uri] { m_received(uri); }, Qt::QueuedConnection);
}

void ApplicationService::ActivateAction(const QString &, const QVariantList &, const QVariantMap &)
{
    bringToFront(); // no actions are published
}

} // namespace platform
