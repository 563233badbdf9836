#pragma once

#include <QWBase/qwbase_private.h>
#include <QWPlatform/network/UrlLoader.h>

#include <QMap>
#include <QString>

namespace qw
{

/// A POST request whose body is a multipart form (RFC 7578) of these text fields, in UTF-8 and in order of name.
QWBASE_SHARED_EXPORT platform::UrlRequest requestWithURLMultipartForm(const QUrl &url,
                                                                      const QMap<QString, QString> &fields);

} // namespace qw
