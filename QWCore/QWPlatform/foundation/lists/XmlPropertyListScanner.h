#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <cstddef>
#include <string_view>

namespace platform
{

/// The lexical layer of XML property lists: cuts UTF-8 text into tags and runs of text, without allocating. A leading
/// byte-order mark, the XML declaration, a document type without declarations of its own, comments and attributes are
/// skipped. Entities can only be the five of XML itself and character references, so nothing can be made to grow.
/// Whoever uses it checks beforehand that the text is UTF-8, and which tag may follow which.
class QWPLATFORM_SHARED_EXPORT XmlPropertyListScanner
{
public:
    enum class Token
    {
        Start,    ///< "<name>"; text() is the name.
        Empty,    ///< "<name/>"; text() is the name.
        End,      ///< "</name>"; text() is the name.
        Text,     ///< Text up to the next "<"; text() is raw, see decodeTo().
        CData,    ///< Content of a CDATA section; text() is raw, see decodeTo().
        Finished, ///< Nothing is left.
        Error,    ///< The text is no XML from here on; stays so.
    };

    /// @p data must outlive the scanner and every text() it gave.
    explicit XmlPropertyListScanner(std::string_view data);

    Token next();

    /// next(), passing over blanks first.
    Token nextTag();

    /// Points into the data.
    std::string_view text() const { return m_text; }

    /// False when text() is to be taken as it stands, so that decodeTo() would only copy it.
    bool needsDecoding() const { return m_needsDecoding; }

    /// The last Text or CData with entities resolved and line ends made "\n", written to @p out, which has room for
    /// text().size() bytes. The number of bytes written, or -1 for an entity that does not exist.
    std::ptrdiff_t decodeTo(char *out) const;

    /// True for blanks, tabs and line ends only, and for "".
    static bool isBlank(std::string_view text);

private:
    Token _fail();
    Token _text();
    Token _markup();
    Token _startTag();
    Token _endTag();
    Token _cdata();
    bool _skipDeclaration();
    bool _skipPast(std::string_view mark);
    bool _skipDocumentType();
    bool _skipAttribute();
    void _skipBlanks();
    std::string_view _name();
    bool _startsWith(std::string_view prefix) const;

    const char *m_at;
    const char *m_end;
    std::string_view m_text;
    Token m_token = Token::Text;
    bool m_needsDecoding = false;
};

} // namespace platform
