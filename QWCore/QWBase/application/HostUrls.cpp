#include "HostUrls.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QVariant>

using platform::System;

namespace qw
{

namespace
{
/// The URL schemes that the host's Info.plist claims, in lower case.
QStringList hostSchemes()
{
    QStringList schemes;
    const QVariantList types = System::current().mainBundle().objectForInfoDictionaryKey("CFBundleURLTypes").toList();
    for (const QVariant &type : types)
        for (const QVariant &scheme : type.toMap().value("CFBundleURLSchemes").toList())
            schemes += scheme.toString().toLower();
    return schemes;
}

/// The scheme of an argument that has the form of a URL, in lower case; "" for any other argument.
QString schemeOf(const QString &argument)
{
    static const QRegularExpression form("^([A-Za-z][A-Za-z0-9+.-]+):.");
    return form.match(argument).captured(1).toLower();
}

/// One that a host claims is one of its own URLs.
bool leadsToFile(const QString &text, const QStringList &schemes)
{
    return schemeOf(text) == u"file" && !schemes.contains("file");
}

/// "" for a relative one ("file:notes.txt"), which names another file to each instance.
QString absoluteFileOf(const QString &url)
{
    const QString path = QUrl(url).toLocalFile();
    return QDir::isAbsolutePath(path) ? path : QString();
}
/// Without dots and doubled slashes, unless a link among the folders makes that another file.
QString tidied(const QString &path)
{
    const QString clean = QDir::cleanPath(path);
    const QString real = QFileInfo(path).canonicalFilePath();
    return QFileInfo(clean).canonicalFilePath() == real ? clean : real;
}
} // namespace

QStringList urlsForHost(QStringList texts)
{
    texts.removeIf([](const QString &text) { return schemeOf(text).isEmpty(); });
    if (texts.isEmpty())
        return texts;
    const QStringList schemes = hostSchemes();
    texts.removeIf([&](const QString &text) {
        if (leadsToFile(text, schemes))
            return !QFileInfo(absoluteFileOf(text)).isFile();
        return schemes.isEmpty() ? !text.contains("://") : !schemes.contains(schemeOf(text));
    });
    return texts;
}

QStringList withFilesAsUrls(QStringList arguments, const QString &folder)
{
    for (QString &argument : arguments) {
        const QFileInfo file(QDir(folder), argument);
        if (!argument.isEmpty() && !argument.startsWith('-') && file.isFile())
            argument = QUrl::fromLocalFile(tidied(file.filePath())).toString(QUrl::FullyEncoded);
    }
    return arguments;
}

QString fileOfUrl(const QString &url)
{
    return leadsToFile(url, hostSchemes()) ? absoluteFileOf(url) : QString();
}

} // namespace qw
