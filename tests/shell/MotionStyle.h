#pragma once

#include <QProxyStyle>

/// A desktop that says how long animations take; 0: it wants none.
class MotionStyle : public QProxyStyle
{
public:
    explicit MotionStyle(int milliseconds)
        : QProxyStyle("Fusion")
        , m_milliseconds(milliseconds)
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? m_milliseconds
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_milliseconds;
};
