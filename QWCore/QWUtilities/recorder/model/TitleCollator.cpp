#include "TitleCollator.h"

#include <QByteArray>
#include <QLocale>

#include <unicode/ucol.h>

namespace qw
{

namespace
{
/// The user's language; the plain one, which knows no numbers in texts, counts as English.
QByteArray localeForTitles()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QByteArrayLiteral("en") : locale.name().toLatin1();
}

UCollator *openTitleCollator()
{
    UErrorCode status = U_ZERO_ERROR;
    UCollator *const collator = ucol_open(localeForTitles().constData(), &status);
    if (U_FAILURE(status))
        return nullptr;
    ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    return collator;
}
} // namespace

TitleCollator::TitleCollator()
    : m_collator(openTitleCollator())
{
}

TitleCollator::~TitleCollator()
{
    if (m_collator)
        ucol_close(m_collator);
}

void TitleCollator::appendKey(const QString &text, std::vector<char> &keys)
{
    if (!m_collator) {
        const QByteArray utf8 = text.toUtf8();
        keys.insert(keys.end(), utf8.constData(), utf8.constData() + utf8.size() + 1);
        return;
    }
    const size_t begin = keys.size();
    const auto write = [&](size_t room) {
        keys.resize(begin + room);
        return static_cast<size_t>(ucol_getSortKey(
            m_collator, reinterpret_cast<const UChar *>(text.utf16()), static_cast<int32_t>(text.size()),
            reinterpret_cast<uint8_t *>(keys.data() + begin), static_cast<int32_t>(room)));
    };
    constexpr size_t usual = 96; // bytes: enough for the titles that people give
    size_t needed = write(usual);
    if (needed > usual)
        needed = write(needed);
    keys.resize(begin + needed);
}

} // namespace qw
