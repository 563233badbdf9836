#pragma once

#include <QString>

#include <memory>

class QWShortcutGroup;

namespace qw
{

/// A group of the shortcuts of @p group, which it shares, whose names hold @p search; null when none does.
std::shared_ptr<QWShortcutGroup> matchingPart(const QWShortcutGroup &group, const QString &search);

} // namespace qw
