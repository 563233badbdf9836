#include "ClearOtherButton.h"

#include <QWPlatform/foundation/Localization.h>

#include <QFontMetrics>
#include <QPushButton>

namespace qw
{

namespace
{
constexpr int longestName = 24; ///< In characters of average width.
constexpr int margin = 8;       ///< Beside the text, beyond what the style gives.

QString title(const QString &name)
{
    return platform::formatted(platform::localized("Clear the Shortcut of “%@”"), {name});
}
} // namespace

ClearOtherButton::ClearOtherButton(QPushButton *button)
    : m_button(button)
{
    if (!m_button)
        return;
    QSizePolicy policy = m_button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_button->setSizePolicy(policy);
    m_button->hide();
}

void ClearOtherButton::show(const QString &name)
{
    if (!m_button)
        return;
    m_button->setVisible(!name.isEmpty());
    if (name.isEmpty())
        return;
    const QFontMetrics metrics(m_button->font());
    const QString elided = metrics.elidedText(name, Qt::ElideMiddle, metrics.averageCharWidth() * longestName);
    m_button->setText(title(elided).replace('&', "&&"));
    m_button->setAccessibleName(title(name));
    m_button->setMinimumWidth(m_button->sizeHint().width() + 2 * margin);
}

bool ClearOtherButton::canBeOffered() const
{
    return m_button && m_button->isVisible();
}

void ClearOtherButton::offer()
{
    m_isOffered = true;
    m_button->window()->setAttribute(Qt::WA_KeyboardFocusChange); // or some styles draw no focus
    m_button->setFocus(Qt::TabFocusReason);
}

} // namespace qw
