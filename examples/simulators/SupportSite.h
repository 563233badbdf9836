#pragma once

#include "HttpServer.h"

/// The company's support site, as far as the applications ask it: which manual is the newest, and the manual itself.
///   /support/manual_version.php?appCode=<code>&version=<major>   a property list with "version"
///   /support/manuals/<code in lower case>/<major>/Manual.zip     from the folder
/// Anything else below the folder is served as a file. Single paths can be scripted with answer().
class SupportSite : public HttpServer
{
    Q_OBJECT

public:
    explicit SupportSite(QString folder = {}, QObject *parent = nullptr);

    /// The version of the newest manual, "2.1"; "" answers with status 404.
    void setManualVersion(const QString &version) { m_manualVersion = version; }

    /// The archive for every application, instead of a file in the folder.
    void setManualArchive(const QByteArray &zip) { m_manualArchive = zip; }

private:
    HttpReply _reply(const HttpRequest &request) const;
    HttpReply _manualVersion(const HttpRequest &request) const;
    HttpReply _file(const QString &path) const;

    QString m_folder; ///< "" serves no files.
    QString m_manualVersion;
    QByteArray m_manualArchive;
};
