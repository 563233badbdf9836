#include "StrictUrl.h"

#include <QRegularExpression>

namespace platform
{

QUrl urlAsItStands(const QString &text)
{
    // Scheme, authority with the only brackets, path and query, fragment. Classes are those of RFC 3986.
    static const QRegularExpression form("\\A(?:[A-Za-z][A-Za-z0-9+.-]*:)?"
                                         "(?://(?:[A-Za-z0-9._~!$&'()*+,;=:@\\[\\]-]|%[0-9A-Fa-f]{2})*+(?=[/?#]|\\z))?"
                                         "(?:[A-Za-z0-9._~!$&'()*+,;=:@/?-]|%[0-9A-Fa-f]{2})*+"
                                         "(?:#(?:[A-Za-z0-9._~!$&'()*+,;=:@/?-]|%[0-9A-Fa-f]{2})*+)?\\z");
    return form.match(text).hasMatch() ? QUrl(text, QUrl::StrictMode) : QUrl();
}

} // namespace platform
