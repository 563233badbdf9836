#pragma once

#include <QProxyStyle>

class QMenu;

namespace platform
{

/// Any style, with menus that scroll where they are longer than the screen. Without it, most styles put what does not
/// fit into further columns, and those run off the screen in turn.
class MenuStyle : public QProxyStyle
{
public:
    /// Takes @p style over; null stands for none.
    explicit MenuStyle(QStyle *style);

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};

/// Has @p menu scroll where a host chose another of the toolkit's styles meanwhile. A style of the host's own decides
/// itself (QStyle::SH_Menu_Scrollable).
void letScroll(QMenu &menu);

} // namespace platform
