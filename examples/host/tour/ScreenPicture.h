#pragma once

#include <QImage>
#include <QList>

class QWidget;

namespace demo
{

/// Pictures of windows as a person would see them.
namespace ScreenPicture
{

/// One window alone, as it is.
QImage of(QWidget &window);

/// Several windows at their places, the last one in front, with their shadows over a plain backdrop. Windows that do
/// not show are left out.
QImage of(const QList<QWidget *> &windows);

/// True when the picture holds more than one colour, as a window that was painted does.
bool hasContent(const QImage &picture);

} // namespace ScreenPicture

} // namespace demo
