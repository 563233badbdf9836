#include "WindowHiding.h"

#include "HidingGuard.h"

namespace platform
{

namespace
{
HidingGuard *guardOf(const QWidget &window)
{
    return window.findChild<HidingGuard *>(QString(), Qt::FindDirectChildrenOnly);
}
} // namespace

void setWindowCanHide(QWidget &window, bool canHide)
{
    if (canHide)
        delete guardOf(window);
    else if (!guardOf(window))
        new HidingGuard(window);
}

bool windowCanHide(const QWidget &window)
{
    return !guardOf(window);
}

} // namespace platform
