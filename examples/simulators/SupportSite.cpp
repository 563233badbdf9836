#include "SupportSite.h"

#include <QDir>
#include <QFileInfo>

namespace
{
QByteArray propertyList(const QString &version)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n\t<key>version</key>\n\t<string>" +
           version.toHtmlEscaped().toUtf8() + "</string>\n</dict>\n</plist>\n";
}

bool isArchivePath(const QString &path)
{
    return path.startsWith(u"/support/manuals/") && path.endsWith(u"/Manual.zip");
}
} // namespace

SupportSite::SupportSite(QString folder, QObject *parent)
    : HttpServer([this](const HttpRequest &request) { return _reply(request); }, parent)
    , m_folder(std::move(folder))
{
}

HttpReply SupportSite::_reply(const HttpRequest &request) const
{
    if (request.path == u"/support/manual_version.php")
        return _manualVersion(request);
    if (!m_manualArchive.isEmpty() && isArchivePath(request.path))
        return HttpReply::text(m_manualArchive, "application/zip");
    return _file(request.path);
}

HttpReply SupportSite::_manualVersion(const HttpRequest &request) const
{
    const bool wellAsked = request.query.hasQueryItem("appCode") && request.query.hasQueryItem("version");
    if (!wellAsked)
        return HttpReply::failure(400);
    if (m_manualVersion.isEmpty())
        return HttpReply::failure(404);
    return HttpReply::text(propertyList(m_manualVersion), "text/xml; charset=utf-8");
}

HttpReply SupportSite::_file(const QString &path) const
{
    if (m_folder.isEmpty())
        return HttpReply::failure(404);
    const QString root = QFileInfo(m_folder).canonicalFilePath();
    const QFileInfo file(QFileInfo(root + path).canonicalFilePath()); // links and ".." resolved
    const bool below = file.filePath().startsWith(root + "/");
    return below && file.isFile() ? HttpReply::file(file.filePath()) : HttpReply::failure(404);
}
