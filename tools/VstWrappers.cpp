#include "VstWrappers.h"

#include "VstLibraryFinder.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

using platform::PropertyList::dictionaryFromFile;
using platform::PropertyList::toXml;

namespace
{
constexpr auto libraryKey = "QWWrappedLibrary";
constexpr auto stampKey = "QWWrappedLibraryModified";
constexpr auto infoPath = "/Contents/Info.plist";
constexpr auto codeFolder = "/Contents/Linux";

qint64 stampOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    return qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

/// "ZamComp-vst.so" is ZamComp: the ending says what the folder says already.
QString displayName(const QString &library)
{
    QString name = QFileInfo(library).completeBaseName();
    if (name.size() > 4 && name.endsWith("-vst", Qt::CaseInsensitive))
        name.chop(4);
    return name;
}

bool writeInfo(const QString &library, const QString &bundle)
{
    const QByteArray hash = QCryptographicHash::hash(library.toUtf8(), QCryptographicHash::Md5).toHex();
    const QVariantMap info{{"CFBundleExecutable", QFileInfo(library).fileName()},
                           {"CFBundleIdentifier", QString("com.quorwell.wrapped." + QString::fromLatin1(hash))},
                           {"CFBundleInfoDictionaryVersion", "6.0"},
                           {"CFBundleName", displayName(library)},
                           {"CFBundlePackageType", "BNDL"},
                           {libraryKey, library},
                           {stampKey, stampOf(library)}};
    QSaveFile file(bundle + infoPath);
    return file.open(QIODevice::WriteOnly) && file.write(toXml(info)) > 0 && file.commit();
}
} // namespace

VstWrappers::VstWrappers(QString folder, Mode mode)
    : m_folder(std::move(folder))
    , m_mode(mode)
{
    for (const QString &name : QDir(m_folder).entryList({"*.vst"}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString bundle = m_folder + '/' + name;
        const QVariantMap info = dictionaryFromFile(bundle + infoPath).value_or(QVariantMap());
        if (!QFileInfo(bundle).isSymLink() && info.contains(libraryKey))
            m_wrappers.insert(info.value(libraryKey).toString(), {bundle, info.value(stampKey).toLongLong()});
    }
}

VstWrappers::Summary VstWrappers::update(const QStringList &libraries)
{
    Summary summary;
    for (const QString &library : libraries + _wrappedElsewhere(libraries))
        _updateOne(library, summary);
    for (auto wrapper = m_wrappers.begin(); wrapper != m_wrappers.end(); ++wrapper) {
        if (m_current.contains(wrapper->bundle))
            continue;
        const bool isRemoved = m_mode == Mode::DryRun || QDir(wrapper->bundle).removeRecursively();
        (isRemoved ? summary.removed : summary.failed) += wrapper->bundle;
    }
    return summary;
}

/// The wrapped libraries that are none of @p libraries, by whatever name.
QStringList VstWrappers::_wrappedElsewhere(const QStringList &libraries) const
{
    QSet<QString> known;
    for (const QString &library : libraries)
        known.insert(QFileInfo(library).canonicalFilePath());
    QStringList elsewhere;
    for (const QString &library : m_wrappers.keys())
        if (const QString real = QFileInfo(library).canonicalFilePath(); !real.isEmpty() && !known.contains(real))
            elsewhere += library;
    return elsewhere;
}

void VstWrappers::_updateOne(const QString &library, Summary &summary)
{
    const auto wrapper = m_wrappers.constFind(library);
    const bool isWrapped = wrapper != m_wrappers.constEnd();
    if (isWrapped && wrapper->stamp == stampOf(library)) {
        ++summary.unchanged;
        m_current.insert(wrapper->bundle);
        return;
    }
    if (!VstLibraryFinder::isVstLibrary(library))
        return; // one that was wrapped is removed afterwards
    const QString bundle = isWrapped ? wrapper->bundle : _freeBundlePath(library);
    const bool isDone = isWrapped ? _refresh(library, bundle) : _make(library, bundle);
    (!isDone ? summary.failed : isWrapped ? summary.updated : summary.added) += isDone ? bundle : library;
    m_current.insert(bundle);
}

QString VstWrappers::_freeBundlePath(const QString &library) const
{
    const QString base = m_folder + '/' + displayName(library);
    QString path = base + ".vst";
    const auto isTaken = [&] {
        return QFileInfo(path).isSymLink() || QFileInfo::exists(path) || m_current.contains(path);
    };
    for (int number = 2; isTaken(); ++number)
        path = base + ' ' + QString::number(number) + ".vst";
    return path;
}

/// The bundle appears whole or not at all.
bool VstWrappers::_make(const QString &library, const QString &bundle) const
{
    if (m_mode == Mode::DryRun)
        return true;
    QDir().mkpath(m_folder);
    const QTemporaryDir unfinished(m_folder + "/.wrapping-XXXXXX");
    const QString made = unfinished.filePath("made.vst");
    return unfinished.isValid() && _fill(library, made) && QDir().rename(made, bundle);
}

bool VstWrappers::_fill(const QString &library, const QString &bundle) const
{
    const QString folder = bundle + codeFolder;
    return QDir().mkpath(folder) && QFile::link(library, folder + '/' + QFileInfo(library).fileName()) &&
           writeInfo(library, bundle);
}

/// A bundle's own date does not follow its library's; the catalogs look at the bundle's.
bool VstWrappers::_refresh(const QString &library, const QString &bundle) const
{
    if (m_mode == Mode::DryRun)
        return true;
    return writeInfo(library, bundle) && ::utimensat(AT_FDCWD, QFile::encodeName(bundle).constData(), nullptr, 0) == 0;
}
