#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;
class QWindow;

namespace qw
{

/// Gives the keyboard back to a floating window when its sheet, alert or file panel has gone: desktops pass over
/// utility windows then and make the main window key.
class QWUTILITIES_TEST_EXPORT KeyReturn : public QObject
{
    Q_OBJECT

public:
    /// @p window outlives this.
    explicit KeyReturn(QWidget &window);
    ~KeyReturn() override;

    /// At once, unless a visible window is key: without a window manager nobody else sees to it.
    void takeBack();

    /// At once, whichever window is key: that of a desktop's own panel, which Qt does not know, may have gone.
    void comeBack();

private:
    void _comeBackAgain();
    void _focusWindowChanged(QWindow *focus);
    bool _isAbove(const QWindow *window) const;

    QWidget &m_window;
    QTimer m_again;
    QPointer<QWindow> m_above; ///< The one above the window that had the keyboard last, or null.
    bool m_wasAbove = false;   ///< Also when that one exists no longer.
};

} // namespace qw
