#pragma once

#include <VstLibraryFinder.h>
#include <VstWrappers.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

/// A folder with bare libraries and a VST folder.
class VstFolders
{
public:
    QString libraries() const { return m_folder.filePath("lib"); }
    QString bundles() const { return m_folder.filePath("VST"); }
    QString bundle(const QString &name) const { return bundles() + '/' + name; }

    /// Puts the test plug-in @p plugin at @p name.
    QString addLibrary(const QString &name, const QString &plugin = "Good") const
    {
        const QString path = libraries() + '/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile::copy(QW_TEST_PLUGINS "/VST/" + plugin + ".vst/Contents/x86_64-linux/" + plugin + ".so", path);
        return path;
    }

    VstWrappers::Summary update(VstWrappers::Mode mode = VstWrappers::Mode::Change) const
    {
        return VstWrappers(bundles(), mode).update(VstLibraryFinder::candidates({libraries()}));
    }

    /// The same with plug-ins that all call themselves @p name.
    VstWrappers::Summary updateNamed(const QString &name) const
    {
        return VstWrappers(bundles(), VstWrappers::Mode::Change, [=](const QString &) { return name; })
            .update(VstLibraryFinder::candidates({libraries()}));
    }

    QStringList bundleNames() const
    {
        return QDir(bundles()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                         QDir::Name);
    }

private:
    QTemporaryDir m_folder;
};

/// Of a file or folder, since 1970.
inline void setModified(const QString &path, qint64 seconds)
{
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}
