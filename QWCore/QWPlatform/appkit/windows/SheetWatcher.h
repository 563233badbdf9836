#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace platform
{

/// Child of an open sheet; knows how the sheet ends.
class SheetWatcher : public QObject
{
    Q_OBJECT

public:
    SheetWatcher(QWidget &sheet, std::function<void(int returnCode)> didEnd);

    /// Hides the sheet, goes, then calls didEnd, which may destroy the sheet.
    void end(int returnCode);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_sheet;
    std::function<void(int)> m_didEnd;
};

} // namespace platform
