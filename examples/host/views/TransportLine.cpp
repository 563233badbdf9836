#include "TransportLine.h"

#include "../audio/Clip.h"
#include "ElidedText.h"
#include "Icons.h"
#include "LevelMeter.h"
#include "Wording.h"

#include <QWPlatform/foundation/Localization.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>

namespace demo
{

namespace
{
constexpr int barSteps = 1000;

void setQuiet(QLabel *label)
{
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}
} // namespace

TransportLine::TransportLine(QWidget *parent)
    : QWidget(parent)
    , m_play(new QToolButton(this))
    , m_position(new QLabel(this))
    , m_level(new LevelMeter(this))
    , m_facts(new ElidedText(this))
    , m_status(new ElidedText(this))
    , m_bar(new QProgressBar(this))
    , m_cancel(new QPushButton(platform::localized("Cancel"), this))
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() + 4);
    large.setWeight(QFont::DemiBold);
    m_position->setFont(large);
    m_position->setMinimumWidth(QFontMetrics(large).horizontalAdvance("00:00.000"));
    m_position->setAccessibleName(platform::localized("Position"));
    setQuiet(m_facts);
    setQuiet(m_status);
    m_status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(160);
    m_bar->setAccessibleName(platform::localized("Progress"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(m_play);
    layout->addWidget(m_position);
    layout->addWidget(m_level);
    layout->addWidget(m_facts);
    layout->addWidget(m_status, 1);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel);
    m_play->setFocusPolicy(Qt::TabFocus);
    m_play->setIconSize({20, 20});
    m_play->setFixedSize(m_cancel->sizeHint().height() + 4, m_cancel->sizeHint().height() + 4);
    showPlaying(false);
    setPosition(0);
    setFixedHeight(m_cancel->sizeHint().height() + 4); // whether or not work is shown
    m_bar->hide();
    m_cancel->hide();
    connect(m_play, &QToolButton::clicked, this, &TransportLine::playRequested);
    connect(m_cancel, &QPushButton::clicked, this, &TransportLine::cancelled);
}

void TransportLine::showSound(const Clip *clip)
{
    m_summary = clip ? Wording::summary(*clip) : QString();
    _showFacts();
    m_play->setVisible(clip != nullptr);
    m_position->setVisible(clip != nullptr);
    m_level->setVisible(clip != nullptr);
}

/// What is done next is done to it, so its length stands where that of the sound does.
void TransportLine::showSelection(const TimeRange &selection)
{
    m_selection = selection;
    _showFacts();
}

void TransportLine::_showFacts()
{
    const QString length =
        platform::formatted(platform::localized("%@ selected"), {Wording::time(m_selection.length())});
    m_facts->setText(m_selection.isEmpty() ? m_summary : m_summary + " · " + length);
}

void TransportLine::setPosition(double seconds)
{
    m_position->setText(Wording::time(seconds));
}

void TransportLine::showPlaying(bool playing)
{
    m_play->setIcon(lineIcon(playing ? "stop" : "play"));
    m_play->setText(platform::localized(playing ? "Stop" : "Play")); // what a screen reader says
    m_play->setToolTip(m_play->text());
    if (!playing)
        showLevel(0);
}

void TransportLine::showLevel(float level)
{
    m_level->setLevel(level);
}

void TransportLine::showStatus(const QString &text)
{
    m_status->setText(text);
}

void TransportLine::showWork(const QString &text)
{
    m_status->setText(text);
    m_bar->setRange(0, 0); // busy, until it is known how far it is
    m_bar->show();
    m_cancel->show();
}

void TransportLine::setWorkFraction(double fraction)
{
    if (fraction <= 0)
        return;
    m_bar->setRange(0, barSteps);
    m_bar->setValue(static_cast<int>(fraction * barSteps));
}

void TransportLine::endWork(const QString &status)
{
    m_bar->hide();
    m_cancel->hide();
    m_status->setText(status);
}

} // namespace demo
