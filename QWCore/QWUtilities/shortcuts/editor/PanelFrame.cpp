#include "PanelFrame.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>

namespace qw
{

namespace TextForms = platform::TextForms;
using platform::System;

namespace
{
constexpr int rightGap = 4;
constexpr int bottomGap = 32;
constexpr double furthest = 1e6; ///< No screen reaches there.

QRect registeredFrame(QSize size)
{
    const QRect visible = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint corner(visible.x() + visible.width() - rightGap, visible.y() + visible.height() - bottomGap);
    return {corner - QPoint(size.width(), size.height()), size};
}

bool isRectangle(const QRectF &rect)
{
    const std::array numbers{rect.x(), rect.y(), rect.width(), rect.height()};
    const auto isPlace = [](double number) { return std::abs(number) < furthest; }; // no NaN either
    return std::all_of(numbers.begin(), numbers.end(), isPlace) && rect.width() >= 1 && rect.height() >= 1;
}
} // namespace

PanelFrame::PanelFrame(QString key, QSize size)
    : m_key(std::move(key))
    , m_size(size)
{
    const QString frame = TextForms::stringFromRect(registeredFrame(size));
    System::current().userDefaults().registerDefaults({{m_key, frame}});
}

QRect PanelFrame::stored(const QRect &lastResort) const
{
    const QRectF text = TextForms::rectFromString(System::current().userDefaults().string(m_key));
    QRect frame = isRectangle(text) ? text.toRect() : lastResort;
    frame.setWidth(std::max(frame.width(), m_size.width()));
    return platform::constrainedToScreen(frame);
}

void PanelFrame::store(const QWidget &window) const
{
    System::current().userDefaults().setObject(m_key, platform::stringFromFrame(window));
}

} // namespace qw
