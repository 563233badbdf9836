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
constexpr auto askedKey = "QWWrappedPluginAskedForName";
constexpr auto infoPath = "/Contents/Info.plist";
constexpr auto codeFolder = "/Contents/Linux";
constexpr auto bundleSuffix = ".vst";
constexpr auto unfinishedFolder =
    "/.wrapping-";                     // nothing below it ends like a bundle, so that no scan takes it for one
constexpr qsizetype longestName = 200; // bytes of UTF-8; file systems take 255 with what is added

qint64 stampOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    return qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

/// "ZamComp-vst.so" is ZamComp: the ending says what the folder says already.
QString nameOfFile(const QString &library)
{
    QString name = QFileInfo(library).completeBaseName();
    if (name.size() > 4 && name.endsWith("-vst", Qt::CaseInsensitive))
        name.chop(4);
    return name;
}

/// What of @p name can be the name of a bundle's file.
QString fileNameFor(QString name)
{
    for (QChar &character : name)
        if (character == u'/' || !character.isPrint())
            character = character == u'/' ? u'-' : u' ';
    name = name.simplified();
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    while (name.toUtf8().size() > longestName)
        name.chop(1);
    return name.trimmed();
}

/// Whether @p bundle has the name, or the name and a number.
bool isNamed(const QString &bundle, const QString &name)
{
    const QString own = QFileInfo(bundle).fileName().chopped(qstrlen(bundleSuffix));
    bool isNumber = false;
    own.mid(name.size()).toInt(&isNumber);
    return own == name || (own.startsWith(name + ' ') && isNumber);
}
} // namespace

VstWrappers::VstWrappers(QString folder, Mode mode, Namer namer)
    : m_folder(std::move(folder))
    , m_mode(mode)
    , m_namer(std::move(namer))
{
    for (const QString &name : QDir(m_folder).entryList({"*.vst"}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString bundle = m_folder + '/' + name;
        const QVariantMap info = dictionaryFromFile(bundle + infoPath).value_or(QVariantMap());
        if (!QFileInfo(bundle).isSymLink() && info.contains(libraryKey))
            m_wrappers.insert(info.value(libraryKey).toString(),
                              {bundle, info.value(stampKey).toLongLong(), info.contains(askedKey)});
    }
}

VstWrappers::Summary VstWrappers::update(const QStringList &libraries)
{
    Summary summary;
    _removeUnfinished();
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

/// What a run that was ended left behind.
void VstWrappers::_removeUnfinished() const
{
    const QStringList pattern{QString(unfinishedFolder).mid(1) + '*'};
    if (m_mode == Mode::Change)
        for (const QString &name : QDir(m_folder).entryList(pattern, QDir::Dirs | QDir::Hidden))
            QDir(m_folder + '/' + name).removeRecursively();
}

void VstWrappers::_updateOne(const QString &library, Summary &summary)
{
    const auto found = m_wrappers.constFind(library);
    const Wrapper *wrapper = found == m_wrappers.constEnd() ? nullptr : &*found;
    const bool isUnchanged = wrapper && wrapper->stamp == stampOf(library) && (wrapper->wasAsked || !m_namer);
    const bool wasAnyTried = !(summary.added + summary.updated + summary.failed).isEmpty();
    const bool isForLater = !isUnchanged && wasAnyTried && m_isTimeUp();
    if (!isUnchanged && !isForLater)
        return _wrap(library, wrapper, summary);
    ++(isUnchanged ? summary.unchanged : summary.left);
    if (wrapper)
        m_current.insert(wrapper->bundle);
}

void VstWrappers::_wrap(const QString &library, const Wrapper *wrapper, Summary &summary)
{
    if (!VstLibraryFinder::isVstLibrary(library))
        return; // one that was wrapped is removed afterwards
    const QString ownName = m_namer ? fileNameFor(m_namer(library)) : QString();
    const QString name = ownName.isEmpty() ? nameOfFile(library) : ownName;
    const bool keepsName = wrapper && isNamed(wrapper->bundle, name);
    const QString bundle = keepsName ? wrapper->bundle : _freeBundlePath(name);
    const bool isDone = wrapper ? _refresh(library, wrapper->bundle, bundle, name) : _make(library, bundle, name);
    (!isDone ? summary.failed : wrapper ? summary.updated : summary.added) += isDone ? bundle : library;
    m_current.insert(isDone || !wrapper ? bundle : wrapper->bundle);
}

QString VstWrappers::_freeBundlePath(const QString &name) const
{
    const QString base = m_folder + '/' + name;
    QString path = base + bundleSuffix;
    const auto isTaken = [&] {
        return QFileInfo(path).isSymLink() || QFileInfo::exists(path) || m_current.contains(path);
    };
    for (int number = 2; isTaken(); ++number)
        path = base + ' ' + QString::number(number) + bundleSuffix;
    return path;
}

/// The bundle appears whole or not at all.
bool VstWrappers::_make(const QString &library, const QString &bundle, const QString &name) const
{
    if (m_mode == Mode::DryRun)
        return true;
    QDir().mkpath(m_folder);
    const QTemporaryDir unfinished(m_folder + unfinishedFolder + "XXXXXX");
    const QString made = unfinished.filePath("made");
    const QString folder = made + codeFolder;
    return unfinished.isValid() && QDir().mkpath(folder) &&
           QFile::link(library, folder + '/' + QFileInfo(library).fileName()) && _writeInfo(library, made, name) &&
           QDir().rename(made, bundle);
}

/// A bundle's own date does not follow its library's; the catalogs look at the bundle's.
bool VstWrappers::_refresh(const QString &library, const QString &before, const QString &bundle,
                           const QString &name) const
{
    if (m_mode == Mode::DryRun)
        return true;
    return (before == bundle || QDir().rename(before, bundle)) && _writeInfo(library, bundle, name) &&
           ::utimensat(AT_FDCWD, QFile::encodeName(bundle).constData(), nullptr, 0) == 0;
}

bool VstWrappers::_writeInfo(const QString &library, const QString &bundle, const QString &name) const
{
    const QByteArray hash = QCryptographicHash::hash(library.toUtf8(), QCryptographicHash::Md5).toHex();
    QVariantMap info{{"CFBundleExecutable", QFileInfo(library).fileName()},
                     {"CFBundleIdentifier", QString("com.quorwell.wrapped." + QString::fromLatin1(hash))},
                     {"CFBundleInfoDictionaryVersion", "6.0"},
                     {"CFBundleName", name},
                     {"CFBundlePackageType", "BNDL"},
                     {libraryKey, library},
                     {stampKey, stampOf(library)}};
    if (m_namer)
        info.insert(askedKey, true);
    QSaveFile file(bundle + infoPath);
    return file.open(QIODevice::WriteOnly) && file.write(toXml(info)) > 0 && file.commit();
}
