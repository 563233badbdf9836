#include "Sheet.h"

#include "SheetWatcher.h"

#include <QDialog>
#include <QWidget>

namespace platform
{

namespace
{
SheetWatcher *watcherOf(const QWidget &sheet)
{
    return sheet.findChild<SheetWatcher *>(QString(), Qt::FindDirectChildrenOnly);
}

void attach(QWidget &sheet, QWidget *window)
{
    sheet.setParent(window, (sheet.windowFlags() & ~Qt::WindowType_Mask) | Qt::Dialog);
    sheet.setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
}
} // namespace

void beginSheet(QWidget &sheet, QWidget *window, std::function<void(int)> didEnd)
{
    delete watcherOf(sheet);
    attach(sheet, window);
    new SheetWatcher(sheet, std::move(didEnd));
    sheet.show();
}

void endSheet(QWidget &sheet, int returnCode)
{
    if (SheetWatcher *const watcher = watcherOf(sheet))
        watcher->end(returnCode);
}

QWidget *attachedSheet(const QWidget *window)
{
    const QList<QWidget *> widgets = window->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    const auto found =
        std::find_if(widgets.begin(), widgets.end(), [](QWidget *w) { return w->isWindow() && watcherOf(*w); });
    return found == widgets.end() ? nullptr : *found;
}

} // namespace platform
