#include "BrowserTexts.h"

#include <QWBase/tables/QWFileSizeFormatter.h>
#include <QWBase/tables/QWTimeFormatter.h>
#include <QWPlatform/foundation/Localization.h>

#include <array>
#include <limits>

using platform::formatted;
using platform::localized;

namespace qw
{

namespace
{
constexpr int longestSpokenName = 60; ///< Characters of a name in a sentence.
constexpr double longestTimeLeft = 100 * 3600;

QString shortened(const QString &name)
{
    const QString line = name.simplified();
    return line.size() > longestSpokenName ? line.left(longestSpokenName - 1) + QChar(0x2026) : line;
}

QString sizeText(quint64 bytes)
{
    return QWFileSizeFormatter().stringForObjectValue(bytes);
}

quint64 totalSizeOf(const std::vector<std::shared_ptr<QWVeskRecording>> &recordings)
{
    quint64 size = 0;
    for (const auto &recording : recordings) {
        const quint64 room = std::numeric_limits<quint64>::max() - size;
        size += std::min(room, recording->fileSize());
    }
    return size;
}

constexpr std::array<const char *, 8> sentences{
    "",
    "Looking for recorders…",
    "No recorder was found on this network. Open Vesk on a device to see its recordings here.",
    "Recorders cannot be looked for: no network service is running. Start Avahi, then reload.",
    "Loading the recordings of “%@”…",
    "“%@” does not answer. Make sure that Vesk is open there, then reload.",
    "“%@” has no recordings.",
    "No recording has the keyword “%@”.",
};
} // namespace

EmptyState::Kind EmptyState::kindOf(RecorderList::State state, const QWVeskDevice *device, const QString &searchText,
                                    int rows)
{
    if (rows > 0)
        return Rows;
    if (!device) {
        if (state == RecorderList::State::NoNetService)
            return NoNetService;
        return state == RecorderList::State::NoneFound ? NoRecorder : LookingForRecorders;
    }
    if (device->isLooking())
        return LoadingTakes;
    if (device->address().isEmpty())
        return NoAnswer;
    return searchText.isEmpty() || device->recordings().empty() ? NoTakes : NothingFound;
}

QString EmptyState::textOf(Kind kind, const QWVeskDevice *device, const QString &searchText)
{
    const QString name = kind == NothingFound ? searchText : device ? device->name() : QString();
    return formatted(localized(QString::fromUtf8(sentences[static_cast<std::size_t>(kind)])), {shortened(name)});
}

QString selectionText(const std::vector<std::shared_ptr<QWVeskRecording>> &selected, int rows)
{
    if (rows == 0)
        return {};
    const QString all = QString::number(rows);
    if (selected.empty())
        return rows == 1 ? localized("1 recording") : formatted(localized("%@ recordings"), {all});
    const QString some = QString::number(selected.size());
    return formatted(localized("%@ of %@ recordings, %@"), {some, all, sizeText(totalSizeOf(selected))});
}

QString progressText(const DownloadProgress &progress)
{
    QString text = sizeText(progress.received);
    if (progress.expected)
        text = formatted(localized("%@ of %@"), {text, sizeText(*progress.expected)});
    if (progress.rate)
        text = formatted(localized("%@, %@ a second"), {text, sizeText(static_cast<quint64>(*progress.rate))});
    if (progress.secondsLeft && *progress.secondsLeft < longestTimeLeft)
        text =
            formatted(localized("%@, %@ left"), {text, QWTimeFormatter().stringForObjectValue(*progress.secondsLeft)});
    return text;
}

QString windowTitle(const QString &title, const QWVeskDevice *device)
{
    if (!device)
        return title;
    QString name = shortened(device->name());
    name.replace("[*]", "[*][*]");
    return formatted(localized("%@ – %@"), {title, name});
}

} // namespace qw
