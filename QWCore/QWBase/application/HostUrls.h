#pragma once

#include <QStringList>

namespace qw
{

/// Those of @p texts that are URLs of the host's own schemes, as its Info.plist claims them. A host that claims none
/// gets whatever looks like one with an authority ("scheme://…"). Main thread.
QStringList urlsForHost(QStringList texts);

} // namespace qw
