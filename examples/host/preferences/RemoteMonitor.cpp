#include "RemoteMonitor.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/controllers/QWRemoteControl.h>

#include <QEvent>
#include <QPainter>

#include <utility>

namespace demo
{

using platform::localized;

namespace
{
constexpr int fadeMilliseconds = 250;
constexpr int remoteRefresh = 500; // milliseconds
constexpr int spacing = 8;
constexpr int keyHeight = 30;

/// In the order of the buttons' numbers.
constexpr std::array names{"Menu", "Play", "+", "−", "Back", "Next"};
} // namespace

RemoteMonitor::RemoteMonitor(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_fade.setSingleShot(true);
    m_fade.setInterval(fadeMilliseconds);
    connect(&m_fade, &QTimer::timeout, this, [this] {
        m_lit.fill(false);
        update();
    });
    m_refresh.setInterval(remoteRefresh);
    connect(&m_refresh, &QTimer::timeout, this, &RemoteMonitor::_followReceiver);
}

RemoteMonitor::~RemoteMonitor()
{
    auto *remote = platform::System::current().sharedIfMade<QWRemoteControl>(); // it may be gone at the end
    if (m_listens && remote)
        remote->removeListener(this);
}

/// Brings what it listens to up to date with its state.
void RemoteMonitor::_listen()
{
    const bool listens = isVisible() && isEnabled();
    if (listens == m_listens)
        return;
    m_listens = listens;
    m_lit.fill(false);
    if (listens)
        QWRemoteControl::remoteControl().addListener(this);
    else
        QWRemoteControl::remoteControl().removeListener(this);
    m_wasActive = QWRemoteControl::remoteControl().isActive();
    listens ? m_refresh.start() : m_refresh.stop();
    setAccessibleDescription(_status());
    update();
}

/// Nobody tells that it has gone, or was found again.
void RemoteMonitor::_followReceiver()
{
    const bool isActive = QWRemoteControl::remoteControl().isActive();
    if (isActive == std::exchange(m_wasActive, isActive))
        return;
    setAccessibleDescription(_status());
    update();
}

void RemoteMonitor::remoteControlButtonDown(QWRemoteControl &, unsigned button)
{
    m_lit.at(button) = true;
    m_fade.stop();
    if (button < 2)
        m_fade.start();
    setAccessibleDescription(localized(names.at(button)));
    update();
}

void RemoteMonitor::remoteControlButtonUp(QWRemoteControl &, unsigned)
{
    m_fade.start();
}

QString RemoteMonitor::_status() const
{
    if (!isEnabled())
        return localized("The remote is not used.");
    return QWRemoteControl::remoteControl().isActive() ? localized("Press a button of the remote.")
                                                       : localized("No infrared receiver is connected.");
}

void RemoteMonitor::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto count = static_cast<int>(names.size());
    const double width = (this->width() - spacing * (count - 1.0)) / count;
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    for (int i = 0; i < count; ++i) {
        const bool isLit = m_lit.at(static_cast<std::size_t>(i));
        const QRectF key = QRectF(i * (width + spacing), 0, width, keyHeight).adjusted(0.5, 0.5, -0.5, -0.5);
        QColor edge = palette().color(QPalette::WindowText);
        edge.setAlphaF(0.2f);
        painter.setPen(edge);
        painter.setBrush(palette().color(group, isLit ? QPalette::Highlight : QPalette::Button));
        painter.drawRoundedRect(key, 6, 6);
        painter.setPen(palette().color(group, isLit ? QPalette::HighlightedText : QPalette::ButtonText));
        painter.drawText(key, Qt::AlignCenter, localized(names.at(static_cast<std::size_t>(i))));
    }
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect().adjusted(0, keyHeight + spacing, 0, 0), Qt::AlignLeft | Qt::AlignTop, _status());
}

void RemoteMonitor::showEvent(QShowEvent *)
{
    _listen();
}

void RemoteMonitor::hideEvent(QHideEvent *)
{
    _listen();
}

void RemoteMonitor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        _listen();
    QWidget::changeEvent(event);
}

} // namespace demo
