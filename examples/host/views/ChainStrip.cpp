#include "ChainStrip.h"

#include "../audio/AudioDocument.h"
#include "ChainChip.h"
#include "Icons.h"

#include <QWPlatform/foundation/Localization.h>

#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

namespace demo
{

namespace
{
constexpr int stripHeight = 50;

constexpr auto arrowName = "arrow";

void paintArrow(QLabel &arrow, QColor ink)
{
    ink.setAlphaF(0.45f);
    arrow.setPixmap(linePicture(arrowName, ink, 20, arrow.devicePixelRatioF()));
}

QLabel *makeArrow(QWidget *parent)
{
    auto *arrow = new QLabel(parent);
    arrow->setObjectName(arrowName);
    paintArrow(*arrow, parent->palette().color(QPalette::WindowText));
    return arrow;
}
} // namespace

ChainStrip::ChainStrip(QWidget *parent)
    : QScrollArea(parent)
    , m_row(new QWidget)
    , m_layout(new QHBoxLayout(m_row))
    , m_group(new QButtonGroup(this))
    , m_add(new QPushButton(platform::localized("Add Effect"), m_row))
{
    setWidget(m_row);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the newest station is brought into view, the others by Tab
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    viewport()->setAutoFillBackground(false);
    m_row->setAutoFillBackground(false);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(8);
    m_add->setIcon(lineIcon("add"));
    m_add->setMinimumSize(m_add->sizeHint() + QSize(28, 4));
    connect(m_group, &QButtonGroup::idClicked, this, &ChainStrip::stationChosen);
}

QSize ChainStrip::sizeHint() const
{
    return {400, stripHeight};
}

void ChainStrip::_clear()
{
    m_layout->removeWidget(m_add);
    while (QLayoutItem *item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

void ChainStrip::_addChip(const QString &icon, const QString &title, const QString &note)
{
    if (m_layout->count() > 0)
        m_layout->addWidget(makeArrow(m_row));
    auto *chip = new ChainChip(icon, title, note, m_row);
    m_group->addButton(chip, static_cast<int>(m_group->buttons().size()));
    m_layout->addWidget(chip);
}

void ChainStrip::show(const AudioDocument &document, int station)
{
    _clear();
    _addChip("wave", document.sourceTitle(), document.origin());
    for (const Step &step : document.steps())
        _addChip("effect", step.name, step.vendor);
    m_layout->addWidget(makeArrow(m_row));
    m_layout->addWidget(m_add);
    m_layout->addStretch(1);
    _place();
    if (QAbstractButton *shown = m_group->button(station))
        shown->setChecked(true);
    _bringIntoView();
}

/// The station that is shown, and after the last one the button that adds another.
void ChainStrip::_bringIntoView()
{
    QAbstractButton *const shown = m_group->checkedButton();
    if (!shown)
        return;
    if (shown == m_group->buttons().last())
        ensureWidgetVisible(m_add);
    ensureWidgetVisible(shown);
}

void ChainStrip::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    _bringIntoView();
}

void ChainStrip::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    for (QLabel *arrow : m_row->findChildren<QLabel *>(arrowName))
        paintArrow(*arrow, palette().color(QPalette::WindowText)); // theirs is still the old one
}

// A layout shows what was added to it only in the next turn of the event loop; the strip would flicker.
void ChainStrip::_place()
{
    for (QWidget *station : m_row->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        station->show();
    m_layout->activate();
    m_row->resize(m_layout->minimumSize().expandedTo(viewport()->size()));
}

} // namespace demo
