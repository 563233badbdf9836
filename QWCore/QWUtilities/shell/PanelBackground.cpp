#include "PanelBackground.h"

#include "BorderlessWindow.h"

#include <QWBase/QWGradient.h>

#include <QPainter>

