#pragma once

#include <QByteArray>
#include <QString>

#include <cstring>
#include <string>
#include <string_view>

namespace qw
{

/// Stands in the text of a catalog file and steps over what is expected there. Every step says whether it was there;
/// after a "no" the text is not in the usual form, and the cursor is of no use any more.
class CatalogXmlCursor
{
public:
    /// @p text must outlive the cursor.
    explicit CatalogXmlCursor(std::string_view text)
        : m_at(text.data())
        , m_end(text.data() + text.size())
    {
    }

    /// Steps over everything up to and including the opening tag of the list.
    bool skipProlog();

    const char *position() const { return m_at; }

    /// Steps over blanks, then over @p text, or leaves the latter where it is.
    bool take(std::string_view text)
    {
        while (m_at != m_end && (*m_at == '\t' || *m_at == '\n' || *m_at == ' '))
            ++m_at;
        return takeHere(text);
    }

    /// The same without blanks before.
    bool takeHere(std::string_view text)
    {
        if (text.empty()) // of which there may be no address to compare
            return true;
        if (static_cast<std::size_t>(m_end - m_at) < text.size() || std::memcmp(m_at, text.data(), text.size()) != 0)
            return false;
        m_at += text.size();
        return true;
    }

    /// The text up to the next tag as it stands; it ends early at what does not stand for itself.
    std::string_view plainText();

    /// The text up to the next tag, decoded.
    bool text(QString &value);

    /// A decimal number.
    bool integer(qlonglong &value);

    /// Base 64 with blanks around.
    bool data(QByteArray &value);

    /// Nothing but blanks is left.
    bool atEnd() { return take({}) && m_at == m_end; }

private:
    bool _escaped(std::string &utf8);

    const char *m_at;
    const char *m_end;
};

} // namespace qw
