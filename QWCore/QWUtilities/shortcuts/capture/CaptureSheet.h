#pragma once

#include "ClearOtherButton.h"
#include "KeyCapture.h"
#include "KeyHold.h"

#include <QObject>
#include <QTimer>

class QLabel;
class QPushButton;

namespace qw
{

/// Wires the sheet that captures a key. Every key is the capture's, so that none of them can operate the sheet: plain
/// Escape pressed twice leaves, an allowed combination held for a second is set, and one that another shortcut has,
/// held as long, gives the keyboard to the button that clears the other. The buttons answer the mouse and assistive
/// technology.
class CaptureSheet : public QObject
{
    Q_OBJECT

public:
    /// None is owned; all outlive this.
    struct Outlets
    {
        QWidget *panel = nullptr;
        QLabel *introText = nullptr;
        QLabel *shortcutText = nullptr;
        QLabel *outroText = nullptr;
        QLabel *hintText = nullptr; ///< Tells how to do without the mouse; may be missing.
        QPushButton *okButton = nullptr;
        QPushButton *clearButton = nullptr;
        QPushButton *clearOtherButton = nullptr; ///< May be missing.
    };

    CaptureSheet(QWKeyboardShortcuts &registry, const Outlets &outlets);
    ~CaptureSheet() override;

    /// Nothing while the sheet is up.
    void begin(const std::shared_ptr<QWShortcut> &shortcut, QWidget &window);
    void see(const platform::KeyEvent &event);
    void clear();
    void clearOther();
    void confirm(const QObject *sender); ///< Sets the key when the sender is the OK button; closes in any case.
    void end();                          ///< Closes; nothing when it is not up.

    const std::shared_ptr<QWShortcut> &editingShortcut() const { return m_capture.editingShortcut(); }

    /// Sees what dispatch leaves alone: keys that are let go, Option with a click, another window becoming active.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void didEnd(); ///< The sheet has gone, however it went.

private:
    void _didEnd();
    void _hold(const platform::KeyEvent &event);
    void _tick();
    bool _isForOffer(const platform::KeyEvent &event);
    void _offerToClearOther();
    void _withdrawOffer();
    void _actOnHeldKey();
    void _setHeldKey();
    void _syncModifiers(Qt::KeyboardModifiers modifiers);
    void _show();
    void _showHint();
    QString _hint() const;
    void _announce();
    QString _instructions() const;
    void _showClearButton();

    Outlets m_outlets;
    KeyCapture m_capture;
    KeyHold m_hold;
    ClearOtherButton m_clearOther;
    QString m_hint;       ///< As the interface file has it.
    QTimer m_ticks{this}; ///< While a key is held; "holdTicks".
    bool m_isSet = false; ///< A held key was set; what remains is to let it go, since its repeats would fire it.
};

} // namespace qw
