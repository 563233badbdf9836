#pragma once

class QByteArray;
class QString;

/// Leaves @p list for the host in the file at @p path (documented text): all of it, or nothing. False when it could
/// not be written, or the host has gone.
bool writeHandOff(const QString &path, const QByteArray &list);
