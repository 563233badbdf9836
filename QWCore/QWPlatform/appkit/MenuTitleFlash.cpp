#include "MenuTitleFlash.h"

#include "ResponderChain.h"

#include <QAction>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QTimer>

#include <algorithm>

namespace platform
{

namespace
{
constexpr int flashMilliseconds = 120;

/// Paints one title as chosen over what the menu bar painted; child of the bar while it does.
class LitTitle : public QObject
{
public:
    LitTitle(QMenuBar &bar, QAction &title)
        : QObject(&bar)
        , m_bar(bar)
        , m_title(&title)
    {
        bar.installEventFilter(this);
        bar.update();
        QTimer::singleShot(flashMilliseconds, this, [this] {
            m_title = nullptr;
            m_bar.update();
            deleteLater();
        });
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint || m_isPainting || !m_title)
            return false;
        m_isPainting = true;
        watched->event(event);
        m_isPainting = false;
        _paint();
        return true;
    }

private:
    void _paint()
    {
        QStyleOptionMenuItem option;
        option.initFrom(&m_bar);
        option.state = QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_Sunken;
        option.rect = m_bar.actionGeometry(m_title);
        option.menuRect = m_bar.rect();
        option.menuItemType = QStyleOptionMenuItem::Normal;
        option.text = m_title->text();
        option.icon = m_title->icon();
        QPainter painter(&m_bar);
        painter.setClipRect(option.rect);
        m_bar.style()->drawControl(QStyle::CE_MenuBarItem, &option, &painter, &m_bar);
    }

    QMenuBar &m_bar;
    QPointer<QAction> m_title;
    bool m_isPainting = false;
};

/// The item of @p bar whose menu is @p menu or holds it somewhere below.
QAction *titleAbove(const QMenuBar &bar, const QMenu &menu)
{
    const QList<QAction *> titles = bar.actions();
    const auto found = std::find_if(titles.begin(), titles.end(), [&](const QAction *title) {
        return title->menu() && (title->menu() == &menu || title->menu()->isAncestorOf(&menu));
    });
    return found == titles.end() ? nullptr : *found;
}
} // namespace

void flashMenuTitle(QMenu &menu)
{
    QMenuBar *const bar = mainMenuBar();
    if (!bar || !bar->isVisible())
        return;
    if (QAction *const title = titleAbove(*bar, menu))
        new LitTitle(*bar, *title);
}

} // namespace platform
