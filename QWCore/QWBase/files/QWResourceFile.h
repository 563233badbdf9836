#pragma once

#include <QWBase/qwbase_private.h>
#include <QWPlatform/devices/components/ResourceFork.h>

#include <QByteArray>

#include <optional>
#include <vector>

class QString;
class QWError;

/// A file of typed resources ("X.rsrc"). A value; reads the whole file at once.
class QWBASE_SHARED_EXPORT QWResourceFile
{
public:
    /// The resource file at @p path (documented text); none, and the reason in @p error, when it cannot be read or is
    /// no resource file.
    static std::optional<QWResourceFile> initWithPath(const QString &path, QWError *error = nullptr);

    /// Data of the resources of @p type, in the order of the file's map. The words of 'thng' resources come in the
    /// machine's byte order, as far as their published base record goes; all other data comes as it stands.
    std::vector<QByteArray> resourcesOfType(quint32 type) const;

private:
    explicit QWResourceFile(platform::ResourceFork fork);

    platform::ResourceFork m_fork;
};
