#pragma once

#include <QWidget>

namespace platform
{

/// Child of a window that the user may not put out of sight.
class HidingGuard : public QObject
{
    Q_OBJECT

public:
    explicit HidingGuard(QWidget &window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _bringBack();

    QWidget &m_window; ///< The parent.
};

} // namespace platform
