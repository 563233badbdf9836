#include "SheetWatcher.h"

#include <QDialog>
#include <QEvent>

namespace platform
{

SheetWatcher::SheetWatcher(QWidget &sheet, std::function<void(int)> didEnd)
    : QObject(&sheet)
    , m_sheet(sheet)
    , m_didEnd(std::move(didEnd))
{
    if (auto *const dialog = qobject_cast<QDialog *>(&sheet))
        connect(dialog, &QDialog::finished, this, &SheetWatcher::end);
    else
        sheet.installEventFilter(this);
}

void SheetWatcher::end(int returnCode)
{
    const auto didEnd = std::move(m_didEnd);
    QWidget &sheet = m_sheet;
    disconnect(&sheet, nullptr, this, nullptr);
    sheet.removeEventFilter(this);
    setParent(nullptr); // the sheet is no longer open, and may be begun again in didEnd
    deleteLater();
    sheet.hide();
    if (didEnd)
        didEnd(returnCode);
}

bool SheetWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    event->ignore(); // end() hides it
    end(0);
    return true;
}

} // namespace platform
