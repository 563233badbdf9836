#include "PaneStage.h"

#include "PaneToolbar.h"
#include "QWUtilities/shell/QWPreferencesPane.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/responders/WidgetTree.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>

#include <QStyle>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include <algorithm>

namespace qw
{

namespace
{
constexpr int longestAnimation = 250; ///< In milliseconds.

/// The desktop's own; 0 where it asks for no motion.
int resizeMilliseconds(const QWidget &window)
{
    return std::min(window.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &window),
                    longestAnimation);
}
} // namespace

PaneStage::PaneStage(platform::Panel &panel, PaneToolbar &items)
    : m_panel(panel)
    , m_contentView(new QWidget)
{
    m_contentView->setObjectName("contentView");
    delete m_panel.layout();
    auto *const column = new QVBoxLayout(&m_panel);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_contentView, 1);
    m_toolbar = items.makeToolbar(m_panel);
    column->insertWidget(0, m_toolbar);
}

/// Keys that went into the old pane go into the new one; Qt would give them to the toolbar.
void PaneStage::show(QWPreferencesPane &pane, QWidget &backstage)
{
    const bool hadKeyboard = _clear(backstage);
    const QSize content = pane.paneSize().expandedTo({m_toolbar->sizeHint().width(), 0});
    _fitPanel(content);
    pane.setParent(m_contentView);
    pane.setGeometry(QRect({}, content));
    pane.show();
    if (hadKeyboard)
        pane.setFocus();
}

/// True when the pane that showed had the keyboard.
bool PaneStage::_clear(QWidget &backstage)
{
    auto *const first = m_contentView->findChild<QWidget *>({}, Qt::FindDirectChildrenOnly);
    if (!first)
        return false;
    const bool hadKeyboard = platform::isWithin(m_panel.focusWidget(), *first);
    first->hide();
    first->setParent(&backstage);
    return hadKeyboard;
}

QSize PaneStage::panelSize() const
{
    return m_resize ? m_resize->endValue().toSize() : m_panel.size();
}

void PaneStage::_fitPanel(const QSize &content)
{
    delete m_resize;
    const QSize size = content + QSize(0, m_toolbar->sizeHint().height());
    if (m_panel.isVisible())
        return _setFrameAnimated(size);
    QRect frame(QPoint(), size);
    frame.moveBottomLeft(m_panel.geometry().bottomLeft());
    m_panel.setFixedSize(size);
    m_panel.setGeometry(frame);
}

/// The top left corner stays.
void PaneStage::_setFrameAnimated(const QSize &size)
{
    const int duration = resizeMilliseconds(m_panel);
    if (duration <= 0)
        return m_panel.setFixedSize(size);
    m_resize = new QVariantAnimation(&m_panel);
    m_resize->setStartValue(m_panel.size());
    m_resize->setEndValue(size);
    m_resize->setDuration(duration);
    m_resize->setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(m_resize, &QVariantAnimation::valueChanged, &m_panel,
                     [panel = &m_panel](const QVariant &value) { panel->setFixedSize(value.toSize()); });
    m_resize->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace qw
