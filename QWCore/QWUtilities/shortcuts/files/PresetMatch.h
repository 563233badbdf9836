#pragma once

#include <QHash>
#include <QString>
#include <QVariantList>

class QWKeyboardShortcuts;

namespace qw
{

/// Tells which presets say what the user's current changes say. Reads the files; of the moment at which it is made.
class PresetMatch
{
public:
    explicit PresetMatch(const QWKeyboardShortcuts &registry);

    bool isCurrent(const QString &preset) const;

private:
    /// Keys by action and tag; the rest of an entry is not taken from a preset either.
    using Keys = QHash<QString, QString>;
    static Keys _keysIn(const QVariantList &array);

    QString m_directory;
    Keys m_current;
};

} // namespace qw
