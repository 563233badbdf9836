#include "ManualVersion.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/files/RegularFile.h>
#include <QWPlatform/network/UrlLoader.h>

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <limits>

namespace qw
{

namespace
{
constexpr QLatin1String tagOpening("<meta name=\"qw_manual_version\" content=\"");
constexpr QLatin1String tagClosing("\">");

/// The file's text; none when it cannot be read or is not UTF-8.
std::optional<QString> textOfFile(const QString &path)
{
    const auto data = platform::readRegularFile(QFile::encodeName(path));
    if (!data)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(*data);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

std::optional<quint32> versionOfManual(const QString &indexPath)
{
    const auto page = textOfFile(indexPath);
    return page ? manualVersionInPage(*page) : std::nullopt;
}

std::optional<quint32> versionOnSite(platform::UrlLoader &loader, const QUrl &question)
{
    const platform::UrlResponse response = loader.load({.url = question, .headers = {}, .body = {}});
    if (!response.succeeded())
        return std::nullopt;
    const auto answer = platform::PropertyList::fromData(response.body);
    if (!answer || answer->typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return manualVersionNumber(answer->toMap().value("version").toString());
}
} // namespace

quint32 manualVersionNumber(const QString &version)
{
    const QString digits = QString(version).remove('.').trimmed();
    const bool negative = digits.startsWith('-');
    qint64 number = 0;
    for (const QChar c : QStringView(digits).mid(negative || digits.startsWith('+') ? 1 : 0)) {
        if (c < u'0' || c > u'9')
            break;
        number = std::min<qint64>(number * 10 + (c.unicode() - u'0'), std::numeric_limits<qint32>::max());
    }
    return static_cast<quint32>(negative ? -number : number);
}

std::optional<quint32> manualVersionInPage(const QString &page)
{
    const auto opening = page.indexOf(tagOpening);
    if (opening < 0)
        return std::nullopt;
    // The search for the end is exactly as long as the tag's opening. Intended: longer values count as unknown.
    const QStringView searched = QStringView(page).mid(opening + tagOpening.size(), tagOpening.size());
    const auto closing = searched.indexOf(tagClosing);
    return closing < 0 ? std::nullopt : std::optional(manualVersionNumber(searched.left(closing).toString()));
}

bool isNewerManualOffered(platform::UrlLoader &loader, const QUrl &question, const QString &indexPath)
{
    const auto remote = versionOnSite(loader, question);
    if (!remote)
        return false;
    const auto local = versionOfManual(indexPath);
    return !local || *remote > *local;
}

} // namespace qw
