#include "TextSearch.h"

namespace qw
{

namespace
{
/// Decomposed, without the marks, in folded case.
QString plain(const QString &text)
{
    QString letters = text.normalized(QString::NormalizationForm_D);
    letters.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return letters.toCaseFolded();
}
} // namespace

bool containsIgnoringCaseAndAccents(const QString &text, const QString &part)
{
    return !part.isEmpty() && plain(text).contains(plain(part));
}

} // namespace qw
