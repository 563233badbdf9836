#include "CaptureSheet.h"

#include "Announcement.h"
#include "KeycapLabel.h"
#include "Keycaps.h"
#include "QWShortcut.h"

#include <QWPlatform/appkit/Sheet.h>
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
{
    reserveWidth(*m_outlets.clearButton, {localized("Clear Other"), localized("Clear")});
    reserveLines(*m_outlets.introText, 2);
    reserveLines(*m_outlets.outroText, 2);
    if (m_outlets.hintText)
        m_hint = m_outlets.hintText->text();
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
    m_capture.see(event);
    if (m_capture.wantsToLeave())
        return end();
    _hold(event);
    if (event.isRepeat)
        return;
    if (event.type == KeyEvent::FlagsChanged)
        return _showClearButton();
    _show();
    _announce();
}

// clearShortcut:
void CaptureSheet::clear()
{
    if (m_isSet)
        return;
    m_hold.stop();
    const QString news = m_capture.clearsOther() ? localized("The other shortcut was cleared.") : QString();
    m_capture.clear();
    _show();
    _announce(news);
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
    m_capture.end();
    Q_EMIT didEnd();
}

/// Keeps the time of an allowed key, or of Option, that is held by itself.
void CaptureSheet::_hold(const KeyEvent &event)
{
    const bool isKey = event.type == KeyEvent::KeyDown && !m_capture.editingKey().isClear();
    if (event.isRepeat)
        return;
    if (isKey && (m_isSet || m_capture.isAllowed()))
        m_hold.press(event.character, event.modifierFlags);
    else if (_asksToClearOther(event))
        m_hold.press(0, event.modifierFlags);
    else if (!m_isSet)
        m_hold.stop();
    if (m_hold.isRunning())
        m_ticks.start();
    _tick();
}

bool CaptureSheet::_asksToClearOther(const KeyEvent &event) const
{
    constexpr quint32 modifiers = KeyEvent::Shift | KeyEvent::Control | KeyEvent::Option | KeyEvent::Command;
    const bool isOptionAlone =
        event.type == KeyEvent::FlagsChanged && (event.modifierFlags & modifiers) == KeyEvent::Option;
    return isOptionAlone && !m_isSet && m_capture.isInUse();
}

void CaptureSheet::_tick()
{
    if (auto *const well = qobject_cast<KeycapLabel *>(m_outlets.shortcutText))
        well->setProgress(m_hold.isReleased() ? 0 : m_hold.progress());
    if (!m_isSet && m_hold.progress() >= 1)
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
    if (m_hold.character() == 0)
        clear();
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
    _showHint();
    _showClearButton();
}

/// What can be done without the mouse; room is reserved for the longer text.
void CaptureSheet::_showHint()
{
    if (m_outlets.hintText)
        m_outlets.hintText->setText(
            m_capture.isInUse()
                ? localized("Press Escape twice to cancel, or hold Alt for a second to clear the other.")
                : m_hint);
}

/// The captured key has the focus, so that its name is what a screen reader says. @p news stand nowhere else.
void CaptureSheet::_announce(const QString &news)
{
    const QString key = Keycaps::spokenText(m_capture.editingKey());
    QStringList texts{news, m_outlets.outroText->text()};
    if (m_capture.isInUse() && m_outlets.hintText)
        texts.append(m_outlets.hintText->text());
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
