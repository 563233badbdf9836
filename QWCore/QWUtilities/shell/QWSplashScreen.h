#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QLabel;
class QWSplashScreenContentView;
class QWidget;

namespace qw
{
class BorderlessWindow;
}

/// The panel that shows while the application finishes launching: name, version, copyright and one line that tells
/// what happens now. One per System, made on first use, gone when closed. Main thread.
class QWUTILITIES_EXPORT QWSplashScreen : public QObject
{
    Q_OBJECT

public:
    /// The one splash screen; a new, unopened one when there is none.
    static QWSplashScreen &splashScreen();

    /// Shows "<action>..." in the action line at once, though the main thread is busy. Does nothing unless the
    /// application uses a splash screen.
    static void setAction(const QString &action);

    /// False when there is no splash screen; never makes one.
    static bool isVisible();

    ~QWSplashScreen() override;

    /// Shows the window, painted when the call returns; nothing when it is visible already.
    void open();

    /// Starts the fade out, which runs in the event loop and ends with this object. Where nothing fades, it is
    /// destroyed before the call returns.
    void close();

    QWidget *window() const; ///< Made by open(), null before.

protected:
    QWSplashScreen();

private:
    void awakeFromNib();
    void _setAction(const QString &action);
    bool _isVisible() const;
    void animationDidStopFinished();
    void _closeWindow();

    std::unique_ptr<QWidget> m_nib;                     ///< Holds the view until the window takes it over.
    QWSplashScreenContentView *m_contentView = nullptr; ///< Null when the interface file is not complete.
    QLabel *m_applicationNameText = nullptr;
    QLabel *m_versionText = nullptr;
    QLabel *m_copyrightText = nullptr;
    QLabel *m_actionText = nullptr;
    std::unique_ptr<qw::BorderlessWindow> m_window;
};
