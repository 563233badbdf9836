#pragma once

#include <QString>

namespace qw
{

/// Why no validator can leave its result at @p handOff (a real path), as the system says it; "" when one can. Makes the
/// folder, and tries with a file of its own, larger than any result, of which nothing stays.
QString whyNoHandOffFits(const QString &handOff);

} // namespace qw
