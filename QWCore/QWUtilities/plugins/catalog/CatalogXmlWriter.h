#pragma once

#include <QWBase/records/StateWriter.h>
#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>

#include <memory>
#include <string_view>

class QWCatalogRecord;

namespace qw
{

/// Writes records as they stand in a catalog file: byte for byte what platform::PropertyList::toXml() makes of the
/// array of their states, without making the states.
class QWUTILITIES_TEST_EXPORT CatalogXmlWriter : public StateWriter
{
public:
    /// What stands before the first record and behind the last, and the whole text of a catalog without records.
    static std::string_view head();
    static std::string_view tail();
    static std::string_view emptyCatalog();

    CatalogXmlWriter();
    ~CatalogXmlWriter() override;

    void append(std::string_view text);
    void appendRecord(const QWCatalogRecord &record);

    /// All that was appended since clear().
    std::string_view text() const { return {m_begin.get(), size()}; }
    std::size_t size() const { return static_cast<std::size_t>(m_at - m_begin.get()); }
    void clear() { m_at = m_begin.get(); }

    void setString(QLatin1StringView key, const QString &value) override;
    void setBoolean(QLatin1StringView key, bool value) override;
    void setInteger(QLatin1StringView key, qint64 value) override;
    void setData(QLatin1StringView key, QByteArrayView value) override;

private:
    void _reserve(std::size_t bytes);
    void _put(std::string_view text);
    template <std::size_t Size>
    void _put(const char (&text)[Size]);
    void _putKey(QLatin1StringView key);
    void _putEscaped(const QString &text);
    void _putBase64(QByteArrayView data);

    std::unique_ptr<char[]> m_begin;
    char *m_at = nullptr;
    char *m_end = nullptr;
};

} // namespace qw
