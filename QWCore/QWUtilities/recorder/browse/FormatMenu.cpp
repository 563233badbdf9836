#include "FormatMenu.h"

#include <algorithm>

namespace qw
{

namespace
{
RecordingFormats::Mask formatsOfAll(const std::vector<std::shared_ptr<QWVeskRecording>> &recordings, bool isBlue)
{
    RecordingFormats::Mask mask = isBlue ? 0 : RecordingFormats::every;
    for (const auto &recording : recordings)
        mask &= recording->formatMask();
    return mask;
}

QStringList titlesFor(RecordingFormats::Mask mask, bool isBlue)
{
    QStringList titles;
    for (const RecordingFormat &format : RecordingFormats::all()) {
        if (format.kind == RecordingFormat::Metadata && isBlue)
            continue;
        if (format.kind == RecordingFormat::Compressed && !(mask & RecordingFormats::bitOf(format)))
            continue;
        if (format.kind == RecordingFormat::Metadata && !titles.contains(QString()))
            titles.append(QString());
        titles.append(QString::fromLatin1(format.title));
    }
    return titles;
}
} // namespace

FormatMenu FormatMenu::forSelection(const std::vector<std::shared_ptr<QWVeskRecording>> &recordings, bool isBlue,
                                    const QString &currentTitle)
{
    FormatMenu menu{titlesFor(formatsOfAll(recordings, isBlue), isBlue), 0};
    if (!currentTitle.isEmpty())
        menu.selected = static_cast<int>(std::max<qsizetype>(menu.titles.indexOf(currentTitle), 0));
    return menu;
}

} // namespace qw
