#include "CatalogReader.h"

#include "CatalogXmlCursor.h"

#include <QWBase/QWCatalogRecord.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <array>

namespace qw
{

namespace
{
using MakeRecord = std::function<QWCatalogRecord &()>;

/// Reads an array of flat dictionaries of text, truth, whole numbers and data, which is what catalogs are, in the form
/// in which everyone writes them. False for anything else, right or wrong; such a file is left to the reader of whole
/// lists.
class FlatReader
{
public:
    FlatReader(std::string_view data, const MakeRecord &makeRecord)
        : m_cursor(data)
        , m_makeRecord(makeRecord)
    {
    }

    bool read() { return m_cursor.skipProlog() && _array() && m_cursor.take("</plist>") && m_cursor.atEnd(); }

private:
    bool _array()
    {
        if (m_cursor.take("<array/>"))
            return true;
        if (!m_cursor.take("<array>"))
            return false;
        while (m_cursor.take("<dict>"))
            if (!_entries(m_makeRecord()))
                return false;
        return m_cursor.take("</array>");
    }

    bool _entries(QWCatalogRecord &record)
    {
        std::string_view last; // writers sort their keys; where one came twice, the reader of whole lists decides
        while (m_cursor.take("<key>")) {
            const std::string_view key = m_cursor.plainText();
            if (key <= last || !m_cursor.takeHere("</key>") || !_value(record, key))
                return false;
            last = key;
        }
        return m_cursor.take("</dict>");
    }

    bool _value(QWCatalogRecord &record, std::string_view key)
    {
        QVariant value;
        if (m_cursor.take("<string>")) {
            QString text;
            if (!_text(text, key))
                return false;
            value = std::move(text);
        } else if (m_cursor.take("<true/>")) {
            value = true;
        } else if (m_cursor.take("<false/>")) {
            value = false;
        } else if (m_cursor.take("<integer>")) {
            qlonglong number = 0;
            if (!m_cursor.integer(number) || !m_cursor.takeHere("</integer>"))
                return false;
            value = number;
        } else if (m_cursor.take("<data>")) {
            QByteArray data;
            if (!m_cursor.data(data) || !m_cursor.takeHere("</data>"))
                return false;
            value = std::move(data);
        } else {
            return false;
        }
        record.setValueForKey(key, value);
        return true;
    }

    /// Records that follow one another often have a maker in common: they share the text, which saves a quarter of the
    /// memory, and with it the time to read and to write it.
    bool _text(QString &text, std::string_view key)
    {
        Text &last = m_lastTexts[(key.size() + (key.empty() ? 0u : static_cast<unsigned char>(key.front()))) %
                                 m_lastTexts.size()];
        if (!last.source.empty() && m_cursor.takeHere(last.source)) {
            text = last.text;
            return true;
        }
        const char *const begin = m_cursor.position();
        if (!m_cursor.text(text) || !m_cursor.takeHere("</string>"))
            return false;
        last = {{begin, static_cast<std::size_t>(m_cursor.position() - begin)}, text};
        return true;
    }

    struct Text
    {
        std::string_view source; ///< As it stands in the file, with the tag behind it.
        QString text;
    };

    CatalogXmlCursor m_cursor;
    const MakeRecord &m_makeRecord;
    std::array<Text, 16> m_lastTexts; ///< By key, roughly.
};

void readWithTree(const QByteArray &data, const MakeRecord &makeRecord)
{
    const auto list = platform::PropertyList::fromData(data);
    if (!list || list->typeId() != QMetaType::QVariantList)
        return;
    for (const QVariant &element : list->toList())
        if (element.typeId() == QMetaType::QVariantMap)
            makeRecord().setState(element.toMap());
}
} // namespace

void CatalogReader::read(const QByteArray &data, const Records &records)
{
    if (FlatReader({data.constData(), static_cast<std::size_t>(data.size())}, records.make).read())
        return;
    records.clear();
    readWithTree(data, records.make);
}

} // namespace qw
