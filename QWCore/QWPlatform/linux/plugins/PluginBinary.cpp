#include "PluginBinary.h"

#include "QWPlatform/foundation/PropertyList.h"

#include <QDir>
#include <QFileInfo>

#include <dlfcn.h>

namespace platform::PluginBinary
{

namespace
{
#if defined(__x86_64__)
constexpr auto architectureFolder = "Contents/x86_64-linux";
#elif defined(__aarch64__)
constexpr auto architectureFolder = "Contents/aarch64-linux";
#else
constexpr auto architectureFolder = "Contents/i386-linux";
#endif
constexpr const char *codeFolders[] = {architectureFolder, "Contents/Linux", "Contents/MacOS"};

/// A bundle made elsewhere may hold a program for another machine at the same place.
bool isElfFile(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(4) == "\177ELF";
}

/// File names to look for, the best first.
QStringList names(const QString &path)
{
    const QVariantMap info = PropertyList::dictionaryFromFile(path + "/Contents/Info.plist").value_or(QVariantMap());
    const QString executable = QFileInfo(info.value("CFBundleExecutable").toString()).fileName(); // never elsewhere
    const QString base = QFileInfo(path).completeBaseName();
    QStringList names{base, base + ".so"};
    if (!executable.isEmpty())
        names = QStringList{executable, executable + ".so"} + names;
    return names;
}

QString named(const QString &folder, const QStringList &names)
{
    for (const QString &name : names)
        if (isElfFile(folder + '/' + name))
            return folder + '/' + name;
    return {};
}

QString firstLibrary(const QString &folder)
{
    return named(folder, QDir(folder).entryList({"*.so"}, QDir::Files, QDir::Name));
}
} // namespace

QString inBundle(const QString &path)
{
    if (QFileInfo(path).isFile())
        return path;
    const QStringList wanted = names(path);
    for (const char *folder : codeFolders)
        if (const QString found = named(path + '/' + folder, wanted); !found.isEmpty())
            return found;
    for (const char *folder : codeFolders)
        if (const QString found = firstLibrary(path + '/' + folder); !found.isEmpty())
            return found;
    return firstLibrary(path);
}

void *load(const QString &path, QString *error)
{
    // Where it really is: plug-ins look for their resources beside themselves, and wrappers hold links.
    const QString real = QFileInfo(path).canonicalFilePath();
    if (real.isEmpty()) {
        *error = QStringLiteral("The library is missing.");
        return nullptr;
    }
    void *library = ::dlopen(QFile::encodeName(real).constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library)
        *error = QString::fromLocal8Bit(::dlerror());
    return library;
}

} // namespace platform::PluginBinary
