#include "GridWindow.h"

#include "GridSimulator.h"
#include "GridView.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
const QStringList otherSerials{"m40h0020", "m64-0123", "m128-0012", "m256-0042"};

QFont smaller(QFont font)
{
    font.setPointSizeF(font.pointSizeF() - 2);
    return font;
}
} // namespace

GridWindow::GridWindow(GridSimulator &grid, const QString &serial)
    : m_grid(grid)
    , m_view(new GridView)
    , m_state(new QLabel)
    , m_traffic(new QLabel)
    , m_serials(new QComboBox)
    , m_plug(new QPushButton)
{
    m_serials->addItem(serial);
    for (const QString &other : otherSerials)
        if (other != serial)
            m_serials->addItem(other);
    _layOut();
    _connect();
    _showGrid();
    m_view->setFocus();
}

void GridWindow::_layOut()
{
    m_traffic->setFont(smaller(m_traffic->font()));
    m_serials->setAccessibleName(tr("Serial number"));
    m_plug->setMinimumWidth(m_plug->fontMetrics().horizontalAdvance(tr("Unplug")) + 40);
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_state);
    texts->addWidget(m_traffic);
    auto *const line = new QHBoxLayout;
    line->setSpacing(8);
    line->addLayout(texts, 1);
    line->addWidget(m_serials);
    line->addWidget(m_plug);
    auto *const all = new QVBoxLayout(this);
    all->setContentsMargins(20, 20, 20, 20);
    all->setSpacing(16);
    all->addWidget(m_view, 1);
    all->addLayout(line);
}

void GridWindow::_connect()
{
    connect(m_view, &GridView::pressed, &m_grid, &GridSimulator::press);
    connect(m_view, &GridView::released, &m_grid, &GridSimulator::release);
    connect(m_plug, &QPushButton::clicked, this, &GridWindow::_plugOrUnplug);
    connect(m_serials, &QComboBox::activated, this, [this] { m_grid.plug(m_serials->currentText()); });
    connect(&m_grid, &GridSimulator::plugged, this, &GridWindow::_showGrid);
    connect(&m_grid, &GridSimulator::unplugged, this, &GridWindow::_showState);
    connect(&m_grid, &GridSimulator::hostChanged, this, &GridWindow::_showState);
    connect(&m_grid, &GridSimulator::ledsChanged, this, &GridWindow::_showState);
    connect(&m_grid, &GridSimulator::buttonChanged, m_view, &GridView::setPressed);
    connect(&m_grid, &GridSimulator::buttonChanged, this, &GridWindow::_showState);
}

void GridWindow::_showGrid()
{
    if (const GridDevice *device = m_grid.device()) {
        _choose(m_grid.serial());
        m_view->setDimensions(device->model().columns, device->model().rows);
        m_view->setLEDs([this](int column, int row) {
            const GridDevice *const now = m_grid.device();
            return m_grid.isPlugged() && now && now->led(column, row);
        });
        resize(sizeHint());
    }
    _showState();
}

/// Scripts may plug in any grid.
void GridWindow::_choose(const QString &serial)
{
    if (m_serials->findText(serial) < 0)
        m_serials->addItem(serial);
    m_serials->setCurrentText(serial);
}

void GridWindow::_showState()
{
    const bool isPlugged = m_grid.isPlugged();
    setWindowTitle(tr("Grid simulator") + " – " + m_serials->currentText());
    m_state->setText(!isPlugged         ? tr("Unplugged")
                     : m_grid.hasHost() ? tr("In use by a host")
                                        : tr("Waiting for a host"));
    const int level = m_grid.device() ? m_grid.device()->level() : 0;
    m_traffic->setText(
        tr("Brightness %1 of 15, %2 bytes in, %3 out").arg(level).arg(m_grid.received()).arg(m_grid.sent()));
    m_traffic->setToolTip(m_grid.link());
    m_plug->setText(isPlugged ? tr("Unplug") : tr("Plug in"));
    m_view->setEnabled(isPlugged);
    m_view->setLevel(level);
}

void GridWindow::_plugOrUnplug()
{
    if (m_grid.isPlugged())
        m_grid.unplug();
    else
        m_grid.plug(m_serials->currentText());
}
