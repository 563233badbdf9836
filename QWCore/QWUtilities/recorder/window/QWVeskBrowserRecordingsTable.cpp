#include "QWVeskBrowserRecordingsTable.h"

#include "QWUtilities/recorder/model/QWVeskFormatFormatter.h"
#include "QWUtilities/recorder/model/QWVeskQualityFormatter.h"

#include <QWBase/tables/QWBooleanFormatter.h>
#include <QWBase/tables/QWChannelsFormatter.h>
#include <QWBase/tables/QWFileSizeFormatter.h>
#include <QWBase/tables/QWTimeFormatter.h>
#include <QWPlatform/foundation/DateFormatter.h>
#include <QWPlatform/foundation/Localization.h>

#include <QApplication>
#include <QHeaderView>

#include <algorithm>
#include <array>

namespace
{
using FormatterPointer = std::shared_ptr<const platform::Formatter>;

constexpr int recordingTextSize = 11; ///< Points.
constexpr int minutesAndSeconds = 12;

FormatterPointer noFormatter()
{
    return nullptr;
}

FormatterPointer lengthFormatter()
{
    const auto formatter = std::make_shared<QWTimeFormatter>();
    formatter->setTimeFormat(minutesAndSeconds);
    return formatter;
}

template <class T>
FormatterPointer newFormatter()
{
    return std::make_shared<T>();
}

struct RecordingColumn
{
    const char *identifier; ///< The key of a recording that it shows.
    const char *header;
    FormatterPointer (*formatter)();
    Qt::AlignmentFlag alignment;
};

constexpr std::array recordingColumns{
    RecordingColumn{"title", "Title", noFormatter, Qt::AlignLeft},
    RecordingColumn{"length", "Length", lengthFormatter, Qt::AlignRight},
    RecordingColumn{"fileSize", "Size", newFormatter<QWFileSizeFormatter>, Qt::AlignRight},
    RecordingColumn{"channels", "Channels", newFormatter<QWChannelsFormatter>, Qt::AlignLeft},
    RecordingColumn{"quality", "Quality", newFormatter<QWVeskQualityFormatter>, Qt::AlignLeft},
    RecordingColumn{"creationDate", "Created", newFormatter<platform::DateFormatter>, Qt::AlignRight},
    RecordingColumn{"modificationDate", "Modified", newFormatter<platform::DateFormatter>, Qt::AlignRight},
    RecordingColumn{"formats", "Available Formats", newFormatter<QWVeskFormatFormatter>, Qt::AlignLeft},
    RecordingColumn{"locked", "Locked", newFormatter<QWBooleanFormatter>, Qt::AlignLeft},
};

struct CornerItem
{
    const char *title;
    const char *identifier;
};

constexpr std::array cornerItems{
    CornerItem{"File Size", "fileSize"},   CornerItem{"Length", "length"},
    CornerItem{"Created", "creationDate"}, CornerItem{"Modified", "modificationDate"},
    CornerItem{"Channels", "channels"},    CornerItem{"Quality", "quality"},
    CornerItem{"Formats", "formats"},      CornerItem{"Locked", "locked"},
};

struct DefaultColumn
{
    const char *identifier;
    double width; ///< Points.
};

constexpr std::array defaultColumns{
    DefaultColumn{"title", 158},   DefaultColumn{"length", 62},  DefaultColumn{"fileSize", 62},
    DefaultColumn{"channels", 62}, DefaultColumn{"quality", 72},
};
} // namespace

QWVeskBrowserRecordingsTable::QWVeskBrowserRecordingsTable(QWidget *parent)
    : QWTableView(parent)
{
}

QWVeskBrowserRecordingsTable::~QWVeskBrowserRecordingsTable() = default;

void QWVeskBrowserRecordingsTable::awakeFromNib()
{
    QFont textFont = QApplication::font();
    textFont.setPointSize(recordingTextSize);
    setFont(textFont);
    horizontalHeader()->setFont(textFont);
    const QList<QWTableColumn> present = tableColumns();
    for (const QWTableColumn &column : present)
        removeTableColumn(column.identifier);
    for (const CornerItem &item : cornerItems)
        addCornerMenuItemForColumnIdentifier(platform::localized(item.title), item.identifier);
    for (const DefaultColumn &column : defaultColumns)
        addTableColumn(tableColumnForIdentifierWidth(column.identifier, column.width));
}

QWTableColumn QWVeskBrowserRecordingsTable::tableColumnForIdentifierWidth(const QString &identifier, double width) const
{
    const auto found =
        std::find_if(recordingColumns.begin(), recordingColumns.end(),
                     [&](const RecordingColumn &column) { return identifier == QLatin1String(column.identifier); });
    if (found == recordingColumns.end())
        return {};
    return {identifier, platform::localized(found->header), found->formatter(), width, found->alignment};
}
