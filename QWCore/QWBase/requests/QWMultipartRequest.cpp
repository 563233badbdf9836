#include "QWMultipartRequest.h"

#include <QUuid>

#include <algorithm>

namespace qw
{

namespace
{
/// A boundary that is found in none of the fields.
QByteArray boundaryFor(const QMap<QString, QString> &fields)
{
    QByteArray boundary;
    const auto contains = [&](const QString &text) { return text.contains(QLatin1String(boundary)); };
    do {
        boundary = "QWForm-" + QUuid::createUuid().toByteArray(QUuid::Id128);
    } while (std::any_of(fields.begin(), fields.end(), contains));
    return boundary;
}

/// A field's name as browsers send it: only what would end the quoted text is escaped.
QByteArray quotedName(const QString &name)
{
    return '"' + name.toUtf8().replace('"', "%22").replace('\r', "%0D").replace('\n', "%0A") + '"';
}

QByteArray part(const QString &name, const QString &value)
{
    return "Content-Disposition: form-data; name=" + quotedName(name) + "\r\n\r\n" + value.toUtf8() + "\r\n";
}
} // namespace

platform::UrlRequest requestWithURLMultipartForm(const QUrl &url, const QMap<QString, QString> &fields)
{
    const QByteArray boundary = boundaryFor(fields);
    platform::UrlRequest request{url, "POST", {{"Content-Type", "multipart/form-data; boundary=" + boundary}}, {}};
    for (auto field = fields.begin(); field != fields.end(); ++field)
        request.body += "--" + boundary + "\r\n" + part(field.key(), field.value());
    request.body += "--" + boundary + "--\r\n";
    return request;
}

} // namespace qw
