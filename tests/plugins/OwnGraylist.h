#pragma once

#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/plugins/AudioComponent.h>

#include <QDir>
#include <QFileInfo>

inline const QString auGraylist = "graylist_au.plist";
inline const QString vstGraylist = "graylist_vst.plist";

/// What a graylist says of a unit.
inline QVariantMap graylistEntry(const char (&subtype)[5], const char (&manufacturer)[5], const QString &name)
{
    return {{"subtype", qlonglong(platform::fourCharCode(subtype))},
            {"manufacturer", qlonglong(platform::fourCharCode(manufacturer))},
            {"name", name}};
}

/// A host's own catalog: its graylist lies in the bundle of this program.
template <class Manager>
class HostsOwn : public Manager
{
};

/// A graylist in the bundle of this program, while it lives.
class OwnGraylist
{
public:
    OwnGraylist(const QString &name, const QByteArray &bytes)
        : m_file(platform::Bundle::forExecutable().path() + "/Contents/Resources/" + name)
    {
        QDir().mkpath(QFileInfo(m_file).path());
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate) || m_file.write(bytes) != bytes.size())
            qFatal("No graylist can be written");
        m_file.close();
    }

    OwnGraylist(const QString &name, const QVariantList &entries)
        : OwnGraylist(name, platform::PropertyList::toXml(entries))
    {
    }

    ~OwnGraylist() { m_file.remove(); }

    OwnGraylist(const OwnGraylist &) = delete;
    OwnGraylist &operator=(const OwnGraylist &) = delete;

private:
    QFile m_file;
};
