#pragma once

#include <QString>

namespace qw
{

/// Whether @p text holds @p part, whatever the case and accents of either; an empty part is in no text.
bool containsIgnoringCaseAndAccents(const QString &text, const QString &part);

} // namespace qw
