#include "LocalPartsOnly.h"

#include <QUrl>

#include <algorithm>
#include <iterator>

namespace platform
{

namespace
{
constexpr const char *localSchemes[] = {"file", "data", "blob", "about", "qrc"};

bool isLocal(const QUrl &url)
{
    return std::any_of(std::begin(localSchemes), std::end(localSchemes),
                       [scheme = url.scheme()](const char *local) { return scheme == QLatin1String(local); });
}
} // namespace

void LocalPartsOnly::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    if (info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame && !isLocal(info.requestUrl()))
        info.block(true);
}

} // namespace platform
