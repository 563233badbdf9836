#include "QWAboutPanelContentView.h"

#include "PanelBackground.h"
#include "QWUtilities/shell/QWAboutPanel.h"

#include <QWBase/QWGradient.h>

#include <QMouseEvent>
#include <QPainter>

namespace
{
constexpr double lineHeight = 49.5; ///< From the bottom; on the middle of a pixel, so that the line is one pixel wide.
constexpr double lineMargin = 20;
} // namespace

QWAboutPanelContentView::QWAboutPanelContentView(QWidget *parent)
    : QWidget(parent)
    , m_background(qw::makePanelGradient())
{
}

QWAboutPanelContentView::~QWAboutPanelContentView() = default;

void QWAboutPanelContentView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        QWAboutPanel::aboutPanel().close();
}

void QWAboutPanelContentView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    qw::fillPanel(painter, *m_background, size());
    painter.setPen(QPen(QColor::fromRgbF(1.F / 3, 1.F / 3, 1.F / 3), 1, Qt::SolidLine, Qt::FlatCap));
    const double y = height() - lineHeight;
    painter.drawLine(QPointF(lineMargin, y), QPointF(width() - lineMargin, y));
}
