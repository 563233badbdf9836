#include "MenuTitleFlash.h"

#include "QWPlatform/appkit/ResponderChain.h"
#include "QWPlatform/appkit/responders/WidgetTree.h"

#include <QAction>
#include <QBasicTimer>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionMenuItem>

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
    explicit LitTitle(QMenuBar &bar)
        : QObject(&bar)
        , m_bar(bar)
    {
        bar.installEventFilter(this);
    }

    QMenuBar &bar() const { return m_bar; }
    bool isLit() const { return m_title; }

    void light(QAction &title)
    {
        m_title = &title;
        m_timer.start(flashMilliseconds, this);
        m_bar.update();
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

protected:
    void timerEvent(QTimerEvent *) override
    {
        m_title = nullptr;
        m_bar.update();
        deleteLater();
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
    QBasicTimer m_timer;
    bool m_isPainting = false;
};

/// The item of @p bar whose menu is @p menu or holds it somewhere below.
QAction *titleAbove(const QMenuBar &bar, const QMenu &menu)
{
    const QList<QAction *> titles = bar.actions();
    const auto found = std::find_if(titles.begin(), titles.end(), [&](const QAction *title) {
        return title->menu() && isWithin(&menu, *title->menu());
    });
    return found == titles.end() ? nullptr : *found;
}
} // namespace

void flashMenuTitle(QMenu &menu)
{
    QMenuBar *const bar = mainMenuBar();
    if (!bar || !bar->isVisible())
        return;
    QAction *const title = titleAbove(*bar, menu);
    if (!title)
        return;
    static QPointer<LitTitle> lit; // a held key lights one title many times
    if (!lit || &lit->bar() != bar || !lit->isLit())
        lit = new LitTitle(*bar);
    lit->light(*title);
}

} // namespace platform
