#include "EffectStep.h"

#include "../app/DemoApplication.h"
#include "../app/HostMenus.h"
#include "../app/MainWindow.h"
#include "../app/SoundActions.h"
#include "ScreenPicture.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

#include <algorithm>

namespace demo
{

using platform::MenuItem;

namespace
{
void collect(const QMenu &menu, QList<MenuItem *> &items)
{
    for (QAction *action : menu.actions()) {
        if (action->menu())
            collect(*action->menu(), items);
        else if (auto *item = qobject_cast<MenuItem *>(action); item && item->representedObject().isValid())
            items += item;
    }
}
} // namespace

EffectStep::EffectStep(QString name, QStringList favourites, int steps)
    : m_name(std::move(name))
    , m_favourites(std::move(favourites))
    , m_steps(static_cast<size_t>(steps))
{
}

void EffectStep::begin(DemoApplication &application)
{
    collect(*application.menus().effects(), m_candidates);
    const auto rank = [this](const MenuItem *item) {
        const auto place = m_favourites.indexOf(item->title());
        return place < 0 ? m_favourites.size() : place;
    };
    std::ranges::stable_sort(m_candidates, {}, rank);
}

void EffectStep::_tryNext(DemoApplication &application)
{
    m_hasFailed = m_candidates.isEmpty();
    if (!m_hasFailed)
        application.actions().applyEffect(m_candidates.takeFirst());
}

std::optional<QImage> EffectStep::picture(DemoApplication &application)
{
    if (application.actions().work().isRunning())
        return std::nullopt;
    if (application.document().steps().size() >= m_steps)
        return ScreenPicture::of(application.mainWindow());
    _tryNext(application);
    return std::nullopt;
}

} // namespace demo
