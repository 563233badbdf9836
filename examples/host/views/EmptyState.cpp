#include "EmptyState.h"

#include "Icons.h"

#include <QWPlatform/foundation/Localization.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace demo
{

namespace
{
constexpr int iconSize = 72;

QLabel *makeLabel(const QString &text, qreal larger, QFont::Weight weight, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() + larger);
    font.setWeight(weight);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    return label;
}
} // namespace

EmptyState::EmptyState(QWidget *parent)
    : QWidget(parent)
    , m_open(new QPushButton(platform::localized("Open…"), this))
    , m_tone(new QPushButton(platform::localized("Built-in Test Tone"), this))
{
    auto *headline = makeLabel(platform::localized("Drop a sound file here"), 4, QFont::DemiBold, this);
    auto *note = makeLabel(platform::localized("Then choose an effect and see what it does to the sound."), 0,
                           QFont::Normal, this);
    note->setForegroundRole(QPalette::PlaceholderText);
    m_open->setDefault(true);
    for (QPushButton *button : {m_tone, m_open})
        button->setMinimumSize(button->sizeHint() + QSize(24, 6));
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch(1);
    buttons->addWidget(m_tone);
    buttons->addWidget(m_open);
    buttons->addStretch(1);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(8);
    layout->addStretch(2);
    layout->addSpacing(iconSize + 16); // the icon is painted
    layout->addWidget(headline);
    layout->addWidget(note);
    layout->addSpacing(16);
    layout->addLayout(buttons);
    layout->addStretch(3);
}

void EmptyState::setWelcoming(bool welcoming)
{
    m_welcoming = welcoming;
    update();
}

void EmptyState::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ink = palette().color(m_welcoming ? QPalette::Highlight : QPalette::WindowText);
    ink.setAlphaF(m_welcoming ? 0.9f : 0.25f);
    painter.setPen(QPen(ink, 1.5, Qt::DashLine));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 12, 12);
    ink.setAlphaF(m_welcoming ? 0.9f : 0.4f);
    const int spare = layout()->itemAt(0)->geometry().bottom();
    painter.drawPixmap(QPointF((width() - iconSize) / 2.0, spare + 8),
                       linePicture("wave", ink, iconSize, devicePixelRatioF()));
}

} // namespace demo
