#include "Localization.h"

#include "Bundle.h"
#include "QWPlatform/System.h"

#include <QStringList>

namespace platform
{

namespace
{
constexpr QStringView conversions = u"@dC";

/// One placeholder at the start of a text: its length, and the argument it names (from 1; 0: the next one).
struct Placeholder
{
    qsizetype length = 0; ///< 0: none there.
    int position = 0;
};

Placeholder placeholderAt(QStringView text)
{
    qsizetype at = 1; // "%"
    int position = 0;
    for (; at < text.size() && at < 4 && text[at] >= u'0' && text[at] <= u'9'; ++at)
        position = position * 10 + (text[at].unicode() - u'0');
    if (at > 1 && (at == text.size() || position == 0 || text[at++] != u'$'))
        return {};
    const bool known = at < text.size() && conversions.contains(text[at]);
    return known ? Placeholder{at + 1, position} : Placeholder();
}
} // namespace

QString localized(const QString &key)
{
    return System::current().mainBundle().localizedString(key);
}

QString formatted(const QString &format, const QStringList &arguments)
{
    QString text;
    int next = 1;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QStringView rest = QStringView(format).mid(i);
        const bool percent = rest.startsWith(u"%%");
        const Placeholder found = rest[0] == u'%' && !percent ? placeholderAt(rest) : Placeholder();
        const int position = found.position ? found.position : next;
        if (found.length && !found.position)
            ++next;
        const bool filled = found.length && position <= arguments.size();
        text += filled ? arguments.at(position - 1) : rest.first(std::max<qsizetype>(found.length, 1)).toString();
        i += percent ? 1 : std::max<qsizetype>(found.length - 1, 0);
    }
    return text;
}

} // namespace platform
