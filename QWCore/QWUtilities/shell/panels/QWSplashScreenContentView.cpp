#include "QWSplashScreenContentView.h"

#include "PanelBackground.h"

#include <QWBase/QWGradient.h>

#include <QPainter>

QWSplashScreenContentView::QWSplashScreenContentView(QWidget *parent)
    : QWidget(parent)
    , m_background(qw::makePanelGradient())
{
}

QWSplashScreenContentView::~QWSplashScreenContentView() = default;

void QWSplashScreenContentView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    qw::fillPanel(painter, *m_background, size());
}
