#pragma once

#include <QByteArrayList>
#include <QString>

/// Whether the file at @p path is a shared library for this machine that exports one of the functions @p names. Reads
/// the dynamic symbol table; nothing is loaded, and a damaged file is no library.
bool exportsOneOf(const QString &path, const QByteArrayList &names);
