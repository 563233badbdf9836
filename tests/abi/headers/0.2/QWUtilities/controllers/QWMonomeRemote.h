#pragma once

#include "QWMonomeRemoteObserver.h"

#include <QWUtilities/qwutilities_export.h>

#include <QtGlobal>

#include <memory>

/// The monome grid on a serial line: buttons in, LEDs out. At most one is connected; it is found when it is plugged in.
/// One object per System, made by the host on the main thread. What is said of the grid may be asked, and LEDs may be
/// set, on any thread and also while no grid is connected: what a grid does not get is neither told nor sent later.
///
/// Positions are the application's: those of the grid, turned by the orientation, then flipped if the origin is 1.
class QWUTILITIES_EXPORT QWMonomeRemote final
{
public:
    /// The one object of the current System. Looks for grids from the first call on; opening one that is there already
    /// takes 0.1 s. A grid that cannot be opened is told in the log only.
    static QWMonomeRemote &remote();

    /// As shutdown(), then waits for the readers; delivers queued calls meanwhile, since an observer may wait for one.
    /// Not on a reader's thread.
    ~QWMonomeRemote();

    QWMonomeRemote(const QWMonomeRemote &) = delete;            ///< There is one.
    QWMonomeRemote &operator=(const QWMonomeRemote &) = delete; ///< There is one.

    /// A grid was opened, and was not unplugged or shut down since.
    bool isConnected() const;

    /// @name Of the grid connected last
    /// 0 before the first.
    ///@{
    quint32 serialNumber() const;    ///< The number in the name of its device.
    quint32 numberOfRows() const;    ///< 8 or 16, before it is turned.
    quint32 numberOfColumns() const; ///< 8 or 16, before it is turned.
    quint32 numberOfButtons() const; ///< Rows times columns.
    ///@}

    /// Quarter turns, 0 to 3 and 0 at first; beyond that positions are not turned. Eight bits are kept.
    unsigned orientation() const;
    void setOrientation(unsigned orientation); ///< For positions from now on; LEDs that are lit stay where they are.

    /// 1 flips the vertical axis; no other value does. 0 at first.
    qint8 origin() const;
    void setOrigin(qint8 origin); ///< For positions from now on; LEDs that are lit stay where they are.

    /// Brightness of the LEDs, 0.0 to 1.0 in 16 steps; kept as it was given. 0 before the first grid, which is set
    /// to 1.
    float intensity() const;
    void setIntensity(float intensity); ///< Sent at once; what lies beyond counts as the nearer end.

    /// Columns 8 to 15 of the device cannot be reached this way: setLEDFrameAtQuadrant() lights them. Each change sends
    /// the whole frame. A position without an LED changes none.
    void setLEDStateAtPosition(bool on, QWGridPosition position);
    bool LEDStateAtPosition(QWGridPosition position) const; ///< As it was set; false where no LED can be reached.
    void toggleLEDAtPosition(QWGridPosition position);      ///< Two threads that do so at once may do it once.

    /// @p rows: 8 bytes, row 0 first, bit n = column n, of the device. Quadrants 0 and 1 lie above 2 and 3; the frame
    /// is sent, but not changed, for any other.
    void setLEDFrameAtQuadrant(const quint8 *rows, unsigned quadrant);

    /// All LEDs off.
    void clearLEDs();

    /// Not owned; called in order of addition. An observer that is there is not added again.
    void addObserver(QWMonomeRemoteObserver &observer);

    /// Waits for a call in progress on another thread, except from within a call of any observer; such a call must not
    /// wait for the thread that removes. An observer must be removed before it is destroyed, after a shutdown too.
    void removeObserver(QWMonomeRemoteObserver &observer);
    bool hasObserver(const QWMonomeRemoteObserver &observer) const; ///< Was added, and not removed since.

    /// Clears and closes the grid; no observer is called any more, ever, and none can be added. A call that another
    /// thread is in goes on: removeObserver() waits for it. Nothing when no grid is connected. Comes by itself when the
    /// application quits.
    void shutdown();

private:
    QWMonomeRemote();

    class Private;
    std::unique_ptr<Private> d;
};
