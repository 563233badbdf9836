#include "WaveformPair.h"

#include "TimeRuler.h"
#include "WaveformView.h"

#include <QWPlatform/foundation/Localization.h>

#include <QVBoxLayout>

#include <algorithm>

namespace demo
{

WaveformPair::WaveformPair(QWidget *parent)
    : QWidget(parent)
    , m_ruler(new TimeRuler(this))
    , m_before(new WaveformView(WaveformView::Tone::Quiet, this))
    , m_after(new WaveformView(WaveformView::Tone::Strong, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_before, 1);
    layout->addWidget(m_after, 1);
    layout->addWidget(m_ruler);
    connect(m_before, &WaveformView::positionChosen, this, &WaveformPair::setPosition);
    connect(m_after, &WaveformView::positionChosen, this, &WaveformPair::setPosition);
}

void WaveformPair::showSound(const QString &heading, const ClipPointer &clip)
{
    m_before->hide();
    m_after->setClip(heading, clip);
    _setDuration(clip->sound.seconds());
}

void WaveformPair::showStep(const ClipPointer &before, const QString &heading, const ClipPointer &after)
{
    m_before->setClip(platform::localized("Before"), before);
    m_after->setClip(heading, after);
    m_before->show();
    _setDuration(std::max(before->sound.seconds(), after->sound.seconds()));
}

void WaveformPair::_setDuration(double seconds)
{
    m_duration = seconds;
    m_ruler->setDuration(seconds);
    m_before->setDuration(seconds);
    m_after->setDuration(seconds);
    setPosition(m_position);
}

void WaveformPair::setPosition(double seconds)
{
    m_position = std::clamp(seconds, 0.0, m_duration);
    m_before->setPosition(m_position);
    m_after->setPosition(m_position);
    Q_EMIT positionChanged(m_position);
}

} // namespace demo
