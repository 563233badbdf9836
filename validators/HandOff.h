#pragma once

#include <QVariantMap>

/// Leaves @p state for the host in the file at @p path (documented text): all of it, or nothing. False when it could
/// not be written.
bool writeHandOff(const QString &path, const QVariantMap &state);
