#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace qw
{

/// The user's folder of shortcuts: the file of current changes, and presets beside it. What cannot be read counts as
/// empty, what cannot be written is not; but nothing of the user's that a write takes the place of unasked is lost: it
/// is set aside. Main thread.
class ShortcutFolder
{
public:
    /// @p current, the file of current changes, lies in the folder.
    ShortcutFolder(QString path, QString current);

    /// Makes the folder and the file of current changes if they are missing: the folder as a copy of the host's factory
    /// presets, the file from what the user defaults may hold of former versions, else empty.
    void make() const;

    QVariantList current();
    void setCurrent(const QVariantList &changes);

    /// Names, in the order of the folder.
    QStringList presets() const;
    bool hasPreset(const QString &name) const;

    /// None when it cannot be read.
    std::optional<QVariantList> preset(const QString &name) const;

    /// Writes over one of that name.
    void setPreset(const QString &name, const QVariantList &changes) const;

    /// Makes the current changes those of a preset; of one that cannot be read, none.
    void usePreset(const QString &name);

    /// Adds a preset of which nobody was asked whether it may take the place of another.
    void addPreset(const QString &name, const QVariantList &changes) const;

private:
    void _makeDirectory() const;
    void _makeCurrentFile() const;
    QString _presetPath(const QString &name) const;

    QString m_path;
    QString m_current;
    bool m_keepsCurrent = false; ///< The next write of the current changes sets aside what is in their file.
};

} // namespace qw
