#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QWidget;

/// The panel that shows while the application finishes launching: name, version, copyright and one line that tells
/// what happens now. One per System, made on first use, gone when closed. Main thread.
class QWUTILITIES_EXPORT QWSplashScreen : public QObject
{
    Q_OBJECT

public:
    /// The one splash screen; a new, unopened one when there is none. Owned by the System.
    static QWSplashScreen &splashScreen();

    /// Shows "<action>..." in the action line at once, though the main thread is busy. Does nothing unless the
    /// application uses a splash screen.
    static void setAction(const QString &action);

    /// False when there is no splash screen; never makes one.
    static bool isVisible();

    /// The window goes at once; close() fades.
    ~QWSplashScreen() override;

    /// Shows the window, painted when the call returns; nothing when it is visible already.
    void open();

    /// Starts the fade out, which runs in the event loop and ends with this object. Where nothing fades, it is
    /// destroyed before the call returns.
    void close();

    /// Made by open(), null before. Not to be deleted.
    QWidget *window() const;

protected:
    /// Only for splashScreen().
    QWSplashScreen();

private:
    class Private;
    std::unique_ptr<Private> d;
};
