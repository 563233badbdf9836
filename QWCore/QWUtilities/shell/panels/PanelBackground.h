#pragma once

#include <QSizeF>

#include <memory>

class QPainter;
class QWGradient;

namespace qw
{

/// The gradient that the splash screen and the about panel share: black, with a quick rise to dark grey in the middle,
/// to a lighter grey at the top.
std::unique_ptr<QWGradient> makePanelGradient();

/// Fills the rounded panel of this @p size, upwards.
void fillPanel(QPainter &painter, const QWGradient &gradient, const QSizeF &size);

} // namespace qw
