#include "WaveformPair.h"

#include "TimeRuler.h"
#include "Viewport.h"
#include "WaveformView.h"

#include <QWPlatform/foundation/Localization.h>

#include <QVBoxLayout>

#include <algorithm>

namespace demo
{

WaveformPair::WaveformPair(Viewport &viewport, QWidget *parent)
    : QWidget(parent)
    , m_viewport(viewport)
    , m_ruler(new TimeRuler(this))
    , m_before(new WaveformView(WaveformView::Tone::Quiet, viewport, this))
    , m_after(new WaveformView(WaveformView::Tone::Strong, viewport, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_before, 1);
    layout->addWidget(m_after, 1);
    layout->addWidget(m_ruler);
    connect(&viewport, &Viewport::visibleChanged, this, [this] { m_ruler->setRange(m_viewport.visible()); });
}

void WaveformPair::showSound(const QString &heading, const ClipPointer &clip)
{
    m_before->hide();
    m_after->setClip(heading, clip);
    m_viewport.setDuration(clip->store.seconds());
}

void WaveformPair::showStep(const ClipPointer &before, const QString &heading, const ClipPointer &after)
{
    m_before->setClip(platform::localized("Before"), before);
    m_after->setClip(heading, after);
    m_before->show();
    m_viewport.setDuration(std::max(before->store.seconds(), after->store.seconds()));
}

void WaveformPair::showRuler(bool visible)
{
    m_ruler->setVisible(visible);
}

bool WaveformPair::showsRuler() const
{
    return !m_ruler->isHidden();
}

} // namespace demo
