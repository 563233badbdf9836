#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

class QWError;

namespace qw
{

/// The user's folder of shortcuts: the file of current changes, and presets beside it. What cannot be read counts as
/// empty; nothing of the user's that a write takes the place of unasked is lost: it is set aside. What cannot be
/// written is false, with the reason. Main thread.
class ShortcutFolder
{
public:
    /// @p current, the file of current changes, lies in the folder.
    ShortcutFolder(QString path, QString current);

    /// Makes the folder and the file of current changes if they are missing: the folder as a copy of the host's factory
    /// presets, the file from what the user defaults may hold of former versions, else empty.
    bool make(QWError *error) const;

    QVariantList current();
    bool setCurrent(const QVariantList &changes, QWError *error);

    /// Names, in the order of the folder.
    QStringList presets() const;
    bool hasPreset(const QString &name) const;

    /// None when it cannot be read.
    std::optional<QVariantList> preset(const QString &name) const;

    /// Writes over one of that name.
    bool setPreset(const QString &name, const QVariantList &changes, QWError *error) const;

    /// Makes the current changes those of a preset; of one that cannot be read, none.
    bool usePreset(const QString &name, QWError *error);

    /// Adds a preset of which nobody was asked whether it may take the place of another.
    bool addPreset(const QString &name, const QVariantList &changes, QWError *error) const;

private:
    bool _makeDirectory(QWError *error) const;
    bool _makeCurrentFile(QWError *error) const;
    QString _presetPath(const QString &name) const;

    QString m_path;
    QString m_current;
    bool m_keepsCurrent = false; ///< The next write of the current changes sets aside what is in their file.
};

} // namespace qw
