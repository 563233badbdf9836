#include "EscapeButton.h"

#include "QWPlatform/foundation/Localization.h"

#include <algorithm>

namespace platform
{

std::optional<int> escapeButton(const Alert &alert)
{
    if (alert.buttons.size() < 2)
        return 0;
    const QString cancel = localized("Cancel");
    const auto found = std::find_if(alert.buttons.begin(), alert.buttons.end(),
                                    [&](const QString &title) { return title == cancel || title == u"Cancel"; });
    if (found == alert.buttons.end())
        return std::nullopt;
    return static_cast<int>(found - alert.buttons.begin());
}

} // namespace platform
