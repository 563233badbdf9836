#include "ListFault.h"

#include "FaultName.h"
#include "PropertyListText.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{
QVariant sameEntry(const QVariantMap &entry, qsizetype)
{
    return entry;
}

QByteArray sameText(const QByteArray &text, qint64)
{
    return text;
}

QVariant titled(QVariantMap entry, const QString &title)
{
    entry["title"] = title;
    return entry;
}

/// Every other one is something else.
QVariant noDictionary(const QVariantMap &entry, qsizetype index)
{
    const std::array<QVariant, 4> others{"text", 12, true, QVariantList{1, 2}};
    return index % 2 == 0 ? others[static_cast<size_t>(index / 2) % others.size()] : QVariant(entry);
}

/// A different one in each.
QVariant withoutKey(const QVariantMap &entry, qsizetype index)
{
    QVariantMap rest = entry;
    rest.remove(entry.keys().at(index % entry.size()));
    return rest;
}

/// Entry n holds the value of its next key under each key, so that every type comes under every key.
QVariant wrongTypes(const QVariantMap &entry, qsizetype index)
{
    const QVariantList values = entry.values();
    QVariantMap wrong;
    for (qsizetype i = 0; i < values.size(); ++i)
        wrong[entry.keys().at(i)] = values.at((i + 1 + index) % values.size());
    return wrong;
}

QVariant oddNumbers(const QVariantMap &entry, qsizetype index)
{
    using Limits = std::numeric_limits<double>;
    const std::array<QVariant, 7> odd{
        Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), -1, 1e308, -0.5, qlonglong(9000000000000000000)};
    QVariantMap changed = entry;
    for (const char *const key : {"length", "fileSize", "channels", "quality"})
        changed[key] = odd[static_cast<size_t>(index++) % odd.size()];
    return changed;
}

QVariant emptyTitle(const QVariantMap &entry, qsizetype)
{
    return titled(entry, QString());
}

QVariant longTitle(const QVariantMap &entry, qsizetype index)
{
    return titled(entry, QString("Long %1 ").arg(index).leftJustified(1000, u'x'));
}

QVariant markedUpTitle(const QVariantMap &entry, qsizetype index)
{
    return titled(entry, QString("<b>Bold %1</b> &amp; <img src='x'> %n %1 %@").arg(index));
}

QVariant pathTitle(const QVariantMap &entry, qsizetype index)
{
    const std::array titles{"../up", "Album/Song", "/etc/song", "..", "a/../../b", ".hidden", "Album/"};
    return titled(entry, titles[static_cast<size_t>(index) % titles.size()]);
}

QVariant sameTitle(const QVariantMap &entry, qsizetype)
{
    return titled(entry, "Take");
}

QVariant oddFilename(const QVariantMap &entry, qsizetype index)
{
    const std::array names{"a b", "ü", "a&format=caf", "a\"b", "a<b>", "%zz", "a#b", ""};
    QVariantMap changed = entry;
    changed["filename"] = QString(names[static_cast<size_t>(index) % names.size()]);
    return changed;
}

QByteArray garbage(const QByteArray &, qint64)
{
    return "\x80\x81 this is no list \xff\xfe<plist";
}

QByteArray truncated(const QByteArray &text, qint64 size)
{
    return text.left(size);
}

QByteArray noArray(const QByteArray &, qint64)
{
    return PropertyListText::xml(QVariantMap{{"takes", QVariantList()}});
}
} // namespace

struct ListFault::Kind
{
    const char *name;
    const char *number; ///< What it means; null where none is taken.
    const char *help;
    QVariant (*entry)(const QVariantMap &, qsizetype index);
    QByteArray (*text)(const QByteArray &, qint64 number);
};

constexpr ListFault::Kind ListFault::kinds[] = {
    {"garbage", nullptr, "is no property list", sameEntry, garbage},
    {"truncated", "bytes", "ends after so many bytes, as if that were all (1000)", sameEntry, truncated},
    {"no-array", nullptr, "is a dictionary", sameEntry, noArray},
    {"endless", nullptr, "never ends", sameEntry, sameText},
    {"no-dictionaries", nullptr, "has entries that are none", noDictionary, sameText},
    {"missing-keys", nullptr, "lacks a key in each entry", withoutKey, sameText},
    {"wrong-types", nullptr, "has values of wrong types under each key", wrongTypes, sameText},
    {"odd-numbers", nullptr, "has numbers that are none, infinite, negative, huge", oddNumbers, sameText},
    {"odd-filenames", nullptr, "has file names that no URL allows", oddFilename, sameText},
    {"titles-empty", nullptr, "has empty titles", emptyTitle, sameText},
    {"titles-long", nullptr, "has titles of 1000 characters", longTitle, sameText},
    {"titles-markup", nullptr, "has titles with markup", markedUpTitle, sameText},
    {"titles-paths", nullptr, "has titles with \"/\" and \"..\"", pathTitle, sameText},
    {"titles-same", nullptr, "has one title for all", sameTitle, sameText},
};

std::optional<ListFault> ListFault::named(const QString &text)
{
    const auto fault = FaultName::in(text);
    const auto kind = std::ranges::find_if(kinds, [&](const Kind &k) { return fault && fault->name == k.name; });
    if (kind == std::end(kinds) || (fault->number && !kind->number))
        return std::nullopt;
    return ListFault(*kind, fault->number.value_or(1000));
}

QString ListFault::help()
{
    QString text;
    for (const Kind &kind : kinds)
        text += FaultName::help(kind.name, kind.number, kind.help);
    return text;
}

ListFault::ListFault(const Kind &kind, qint64 number)
    : m_kind(&kind)
    , m_number(number)
{
}

QVariant ListFault::entry(const QVariantMap &entry, qsizetype index) const
{
    return m_kind->entry(entry, index);
}

QByteArray ListFault::text(const QByteArray &text) const
{
    return m_kind->text(text, m_number);
}

bool ListFault::isEndless() const
{
    return QLatin1String(m_kind->name) == u"endless";
}
