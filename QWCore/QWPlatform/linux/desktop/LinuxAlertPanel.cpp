#include "LinuxAlertPanel.h"

#include "LinuxAlertText.h"
#include "QWPlatform/appkit/TintedIcon.h"
#include "QWPlatform/appkit/windows/AlertResponder.h"
#include "QWPlatform/appkit/windows/EscapeButton.h"
#include "QWPlatform/foundation/Localization.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

namespace platform
{

namespace
{
constexpr int edge = 20;
constexpr int betweenGroups = 16;
constexpr int betweenControls = 8;
constexpr int iconSize = 48;
constexpr int buttonPadding = 16;
constexpr int textWidth = 380;
constexpr int widestButtonText = 320;
constexpr int mostMessageLines = 6;
constexpr int mostInformativeLines = 14;

/// The window that the user is looking at: the active one, else the last one that came up, such as a splash screen.
QWidget *frontWindow(const QWidget *except)
{
    if (QWidget *const modal = QApplication::activeModalWidget(); modal && modal != except)
        return modal;
    if (QWidget *const active = QApplication::activeWindow(); active && active != except)
        return active;
    const QWindowList windows = QGuiApplication::topLevelWindows(); // in the order in which they were made
    const auto found = std::find_if(windows.rbegin(), windows.rend(), [&](const QWindow *window) {
        const bool standsAlone = window->type() != Qt::Popup && window->type() != Qt::ToolTip;
        return window->isVisible() && standsAlone && QWidget::find(window->winId()) != except;
    });
    return found == windows.rend() ? nullptr : QWidget::find((*found)->winId());
}

/// The host's icon, else a quiet mark in the text colour.
QIcon alertIcon()
{
    constexpr auto mark =
        "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24' fill='none' "
        "stroke='currentColor' stroke-width='1.75' stroke-linecap='round' stroke-linejoin='round'>"
        "<path d='M12 4L2.8 20h18.4zM12 10v4.5M12 17.2v.1'/></svg>";
    const QIcon icon = QApplication::windowIcon();
    return icon.isNull() ? tintedIconFromSvg(mark) : icon;
}

QLabel *makeIcon(QWidget &panel)
{
    auto *const label = new QLabel(&panel);
    label->setPixmap(alertIcon().pixmap(QSize(iconSize, iconSize), panel.devicePixelRatioF()));
    label->setAlignment(Qt::AlignTop);
    return label;
}

QPushButton *makeButton(const QString &title, QWidget *parent)
{
    QString shown = parent->fontMetrics().elidedText(title.simplified(), Qt::ElideMiddle, widestButtonText);
    auto *const button = new QPushButton(shown.replace('&', "&&"), parent);
    button->setMinimumWidth(button->sizeHint().width() + buttonPadding);
    button->setAutoDefault(true);
    button->setAccessibleName(title);
    return button;
}
} // namespace

LinuxAlertPanel::LinuxAlertPanel(const Alert &alert)
    : m_alert(alert)
{
    if (m_alert.buttons.isEmpty())
        m_alert.buttons = QStringList{localized("OK")};
    m_escapeButton = escapeButton(m_alert);
    m_choice = m_escapeButton.value_or(static_cast<int>(m_alert.buttons.size()) - 1);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowFlag(Qt::WindowCloseButtonHint, m_escapeButton.has_value());
    setWindowTitle(QApplication::applicationDisplayName());
    setAccessibleName(m_alert.messageText);
    auto *const top = new QHBoxLayout;
    top->setSpacing(betweenGroups);
    top->addWidget(makeIcon(*this), 0, Qt::AlignTop);
    top->addLayout(_makeTexts(), 1);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(betweenGroups + betweenControls / 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(top);
    layout->addLayout(_makeButtons());
}

QVBoxLayout *LinuxAlertPanel::_makeTexts()
{
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(betweenControls);
    QFont bold = font();
    bold.setBold(true);
    texts->addWidget(new LinuxAlertText(m_alert.messageText, bold, textWidth, mostMessageLines, this));
    if (!m_alert.informativeText.isEmpty())
        texts->addWidget(new LinuxAlertText(m_alert.informativeText, font(), textWidth, mostInformativeLines, this));
    texts->addStretch();
    return texts;
}

/// The first button is the default one, at the right; Tab goes through them in their given order.
QHBoxLayout *LinuxAlertPanel::_makeButtons()
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(betweenControls);
    for (int i = 0; i < m_alert.buttons.size(); ++i) {
        QPushButton *const button = makeButton(m_alert.buttons.at(i), this);
        connect(button, &QPushButton::clicked, this, [this, i] { _choose(i); });
        row->insertWidget(0, button);
        if (i == 0) {
            button->setDefault(true);
            button->setFocus();
        }
    }
    row->insertStretch(0);
    return row;
}

int LinuxAlertPanel::run()
{
    setWindowModality(Qt::ApplicationModal);
    _standAbove(frontWindow(this));
    QTimer::singleShot(0, this, &LinuxAlertPanel::_askResponder);
    exec();
    return m_choice;
}

void LinuxAlertPanel::reject()
{
    if (m_escapeButton)
        _choose(*m_escapeButton);
}

void LinuxAlertPanel::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    raise();
    activateWindow();
}

/// Transient for the window, not its child: a splash screen may go while the alert stands.
void LinuxAlertPanel::_standAbove(QWidget *window)
{
    if (!window)
        return;
    winId();
    if (QWindow *const below = window->window()->windowHandle())
        windowHandle()->setTransientParent(below);
    adjustSize();
    move(window->window()->frameGeometry().center() - rect().center());
}

void LinuxAlertPanel::_askResponder()
{
    if (!alertResponder())
        return;
    const AlertResponder responder = alertResponder(); // it may be replaced while it runs
    if (const std::optional<int> choice = responder(m_alert, this))
        _choose(*choice);
}

void LinuxAlertPanel::_choose(int button)
{
    m_choice = button;
    done(button);
}

} // namespace platform
