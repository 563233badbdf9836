#include "CaptureSheet.h"

#include "QWUtilities/shortcuts/QWShortcut.h"
#include "QWUtilities/shortcuts/editor/Announcement.h"
#include "QWUtilities/shortcuts/editor/KeycapLabel.h"
#include "QWUtilities/shortcuts/editor/Keycaps.h"

#include <QWPlatform/appkit/windows/Sheet.h>
#include <QWPlatform/foundation/Localization.h>

#include <QCoreApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>

namespace qw
{

using platform::formatted;
using platform::KeyEvent;
using platform::localized;

namespace
{
constexpr int tick = 25; ///< Milliseconds.

/// Keys that press a button which has the keyboard.
bool pressesButton(const KeyEvent &event)
{
    constexpr char16_t enter = 3, carriageReturn = 13;
    const QWShortcutKey key = QWShortcutKey::shortcutKeyForEvent(event).value_or(QWShortcutKey());
    return key == QWShortcutKey(carriageReturn, 0) || key == QWShortcutKey(enter, 0) || key == QWShortcutKey(u' ', 0);
}

/// Nothing moves when the title changes.
void reserveWidth(QPushButton &button, const QStringList &titles)
{
    for (const QString &title : titles) {
        button.setText(title);
        button.setMinimumWidth(qMax(button.minimumWidth(), button.sizeHint().width()));
    }
}

void reserveLines(QLabel &label, int lines)
{
    label.setMinimumHeight(QFontMetrics(label.font()).lineSpacing() * lines);
}
} // namespace

CaptureSheet::CaptureSheet(QWKeyboardShortcuts &registry, const Outlets &outlets)
    : m_outlets(outlets)
    , m_capture(registry)
    , m_clearOther(outlets.clearOtherButton)
{
    reserveWidth(*m_outlets.clearButton, {localized("Clear Other"), localized("Clear")});
    reserveLines(*m_outlets.introText, 2);
    reserveLines(*m_outlets.outroText, 2);
    if (m_outlets.hintText) {
        m_hint = m_outlets.hintText->text();
        reserveLines(*m_outlets.hintText, 3);
    }
    m_ticks.setObjectName("holdTicks");
    m_ticks.setInterval(tick);
    connect(&m_ticks, &QTimer::timeout, this, &CaptureSheet::_tick);
}

CaptureSheet::~CaptureSheet() = default;

// editShortcut:
void CaptureSheet::begin(const std::shared_ptr<QWShortcut> &shortcut, QWidget &window)
{
    if (m_capture.editingShortcut())
        return;
    m_capture.begin(shortcut);
    m_isSet = false;
    const QString intro = localized("Enter the key combination you would like to use as a shortcut for “%@”...");
    m_outlets.introText->setText(formatted(intro, {shortcut->name()}));
    _show();
    m_outlets.shortcutText->setAccessibleName(_instructions());
    QCoreApplication::instance()->installEventFilter(this);
    platform::beginSheet(*m_outlets.panel, &window, [this](int) { _didEnd(); });
    m_outlets.panel->activateWindow();
    m_outlets.shortcutText->setFocus();
}

// doSetShortcut:
void CaptureSheet::see(const KeyEvent &event)
{
    if (m_isSet)
        return _hold(event);
    if (_isForOffer(event))
        return;
    m_capture.see(event);
    if (m_capture.wantsToLeave())
        return end();
    if (event.type == KeyEvent::FlagsChanged) {
        _showClearButton();
    } else if (!event.isRepeat) {
        _show();
        _announce();
    }
    _hold(event);
}

// clearShortcut:
void CaptureSheet::clear()
{
    if (m_isSet)
        return;
    m_hold.stop();
    m_capture.clear();
    _withdrawOffer();
    _show();
    _announce();
}

// Also the visible way to what "Clear Other" does while Option is held.
void CaptureSheet::clearOther()
{
    if (m_isSet)
        return;
    m_hold.stop();
    m_capture.clearOther();
    _withdrawOffer();
    _show();
    _announce();
}

// confirmSetShortcut:
void CaptureSheet::confirm(const QObject *sender)
{
    if (sender == m_outlets.okButton)
        m_capture.commit();
    end();
}

void CaptureSheet::end()
{
    platform::endSheet(*m_outlets.panel);
}

bool CaptureSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyRelease && KeyEvent(*event).type == KeyEvent::KeyUp) {
        if (!static_cast<QKeyEvent *>(event)->isAutoRepeat())
            m_hold.release();
    } else if (event->type() == QEvent::MouseButtonPress && watched == m_outlets.clearButton) {
        _syncModifiers(static_cast<QMouseEvent *>(event)->modifiers());
    } else if (event->type() == QEvent::WindowDeactivate && watched == m_outlets.panel) {
        _withdrawOffer();
        m_hold.release(); // whatever becomes of the keys is told to another program
        _syncModifiers({});
    }
    return QObject::eventFilter(watched, event);
}

// setShortcutPanelDidEnd:returnCode:contextInfo:
void CaptureSheet::_didEnd()
{
    QCoreApplication::instance()->removeEventFilter(this);
    m_ticks.stop();
    m_hold.stop();
    m_clearOther.withdraw();
    m_capture.end();
    Q_EMIT didEnd();
}

/// Keeps the time of a key that is held.
void CaptureSheet::_hold(const KeyEvent &event)
{
    const bool isKey = event.type == KeyEvent::KeyDown && !m_capture.editingKey().isClear();
    if (event.isRepeat)
        return;
    if (isKey && (m_isSet || m_capture.isAllowed() || m_clearOther.canBeOffered()))
        m_hold.press(event.character, event.modifierFlags);
    else if (!m_isSet)
        m_hold.stop();
    if (m_hold.isRunning())
        m_ticks.start();
    _tick();
}

/// The button has the keyboard: Return and Space press it, and any other key is the capture's again. The repeats of the
/// key that is still held, which may come as presses, are neither.
bool CaptureSheet::_isForOffer(const KeyEvent &event)
{
    if (!m_clearOther.isOffered() || event.type != KeyEvent::KeyDown)
        return false;
    const bool isStillHeld = event.isRepeat || m_hold.goesOnWith(event.character, event.modifierFlags);
    if (isStillHeld)
        m_hold.press(event.character, event.modifierFlags);
    else if (pressesButton(event))
        clearOther();
    else
        _withdrawOffer();
    return isStillHeld || pressesButton(event);
}

void CaptureSheet::_offerToClearOther()
{
    m_clearOther.offer();
    _showHint();
    _announce();
}

void CaptureSheet::_withdrawOffer()
{
    if (!m_clearOther.isOffered())
        return;
    m_clearOther.withdraw();
    m_outlets.shortcutText->setFocus();
}

void CaptureSheet::_tick()
{
    if (auto *const well = qobject_cast<KeycapLabel *>(m_outlets.shortcutText))
        well->setProgress(m_hold.isReleased() ? 0 : m_hold.progress());
    if (!m_isSet && !m_clearOther.isOffered() && m_hold.progress() >= 1)
        return _actOnHeldKey();
    if (m_hold.isRunning() && !m_hold.isReleased())
        return;
    m_ticks.stop();
    m_hold.stop();
    if (m_isSet)
        end();
}

void CaptureSheet::_actOnHeldKey()
{
    if (m_clearOther.canBeOffered())
        _offerToClearOther();
    else
        _setHeldKey();
}

void CaptureSheet::_setHeldKey()
{
    m_isSet = true;
    m_capture.commit();
    m_outlets.outroText->setText(localized("The shortcut is set. Let go of the keys."));
    _announce();
}

void CaptureSheet::_syncModifiers(Qt::KeyboardModifiers modifiers)
{
    if (m_isSet)
        return;
    KeyEvent change;
    change.type = KeyEvent::FlagsChanged;
    change.modifierFlags = modifiers.testFlag(Qt::AltModifier) ? KeyEvent::Option : 0u;
    m_capture.see(change);
    _showClearButton();
}

void CaptureSheet::_show()
{
    if (auto *const well = qobject_cast<KeycapLabel *>(m_outlets.shortcutText))
        well->setKey(m_capture.editingKey());
    else
        m_outlets.shortcutText->setText(m_capture.editingKey().displayString());
    m_outlets.outroText->setText(m_capture.refusal());
    m_outlets.okButton->setEnabled(m_capture.isAllowed());
    m_clearOther.show(m_capture.nameOfOther());
    _showHint();
    _showClearButton();
}

/// What can be done, and what Cancel does not undo; room is reserved for the longest text.
void CaptureSheet::_showHint()
{
    if (m_outlets.hintText)
        m_outlets.hintText->setText(_hint());
}

QString CaptureSheet::_hint() const
{
    const QString cleared = localized("The shortcut of “%@” was cleared.");
    const QString news =
        m_capture.clearedName().isEmpty() ? QString() : formatted(cleared, {m_capture.clearedName()}) + ' ';
    if (!m_capture.isInUse())
        return news + m_hint;
    const QString warning =
        localized("Clearing the other shortcut is saved at once, and Cancel does not bring it back.");
    if (m_clearOther.isOffered())
        return news + warning + ' ' + localized("Press Return to clear it.");
    if (m_clearOther.canBeOffered())
        return news + warning + ' ' +
               localized("Press Escape twice to cancel, or hold the keys for a second to reach the button.");
    return news + warning;
}

/// The captured key has the focus, so that its name is what a screen reader says.
void CaptureSheet::_announce()
{
    const QString key = Keycaps::spokenText(m_capture.editingKey());
    QStringList texts{m_outlets.outroText->text()};
    if (m_capture.isInUse() || !m_capture.clearedName().isEmpty())
        texts.append(_hint());
    texts.removeAll(QString());
    const QString shown = key.isEmpty() ? localized("No shortcut") : key;
    announce(*m_outlets.shortcutText, texts.isEmpty() ? shown : shown + ". " + texts.join(' '));
}

/// What stands in the sheet when it comes up.
QString CaptureSheet::_instructions() const
{
    QStringList texts{m_outlets.introText->text(), Keycaps::spokenText(m_capture.editingKey())};
    if (m_outlets.hintText)
        texts.append(m_outlets.hintText->text());
    texts.removeAll(QString());
    return texts.join(' ');
}

void CaptureSheet::_showClearButton()
{
    m_outlets.clearButton->setText(localized(m_capture.clearsOther() ? "Clear Other" : "Clear"));
    m_outlets.clearButton->setEnabled(m_capture.canClear());
}

} // namespace qw
