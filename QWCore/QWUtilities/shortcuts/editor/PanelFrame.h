#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace qw
{

/// Where a panel was, in user defaults as a rectangle string.
class PanelFrame
{
public:
    /// Registers a frame of @p size at the lower right of the main screen.
    PanelFrame(QString key, QSize size);

    /// On a screen that there is and at least as wide as registered; @p lastResort when the defaults hold no rectangle.
    QRect stored(const QRect &lastResort) const;

    void store(const QWidget &window) const;

private:
    QString m_key;
    QSize m_size;
};

} // namespace qw
