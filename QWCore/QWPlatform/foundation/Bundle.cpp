#include "Bundle.h"

#include "PropertyList.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <array>
#include <dlfcn.h>
#include <link.h>
#include <optional>
#include <utility>

namespace platform
{

class Q_DECL_HIDDEN Bundle::Private
{
public:
    QString path;
    std::optional<QVariantMap> info;    ///< Once read.
    std::optional<QVariantMap> strings; ///< Default table, once read.
};

namespace
{
/// Where Info.plist may stand below a bundle, best place first.
constexpr std::array infoPlaces{"Contents/Info.plist", "Versions/Current/Resources/Info.plist",
                                "Versions/A/Resources/Info.plist", "Resources/Info.plist", "Info.plist"};

/// Where resources may stand, likewise.
constexpr std::array resourcePlaces{"Contents/Resources", "Versions/Current/Resources", "Versions/A/Resources",
                                    "Resources"};

/// Older bundles name the folders of some languages in English.
constexpr std::array<std::pair<const char *, const char *>, 7> languageNames{{{"en", "English"},
                                                                              {"de", "German"},
                                                                              {"fr", "French"},
                                                                              {"es", "Spanish"},
                                                                              {"it", "Italian"},
                                                                              {"nl", "Dutch"},
                                                                              {"ja", "Japanese"}}};

bool isFramework(const QString &path)
{
    return path.endsWith(u".framework");
}

/// A mere folder, as that of a program outside any bundle: without the levels that bundles have.
bool isFlat(const QString &path)
{
    return !path.endsWith(u".app") && !QFileInfo(path + u"/Contents").isDir();
}

QString programPath()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

/// Folder names that stand for @p language ("de-AT"), best first.
QStringList folderNames(const QString &language)
{
    const QString base = language.section(u'-', 0, 0);
    QStringList names{language, QString(language).replace(u'-', u'_'), base};
    for (const auto &[code, name] : languageNames)
        if (base == QLatin1String(code))
            names.append(QLatin1String(name));
    return names;
}

/// The languages that the user reads, best first; the plain "C" locale reads English.
QStringList userLanguages()
{
    const QStringList languages = QLocale().uiLanguages();
    return languages.isEmpty() || languages.first() == u"C" ? QStringList{QStringLiteral("en")} : languages;
}

/// The user's best language folder among those in @p resources ("de.lproj"), or "".
QString bestLanguageFolder(const QString &resources)
{
    const QStringList present = QDir(resources).entryList({QStringLiteral("*.lproj")}, QDir::Dirs);
    if (present.isEmpty())
        return {};
    for (const QString &language : userLanguages())
        for (const QString &name : folderNames(language))
            if (present.contains(name + u".lproj"))
                return name + u".lproj";
    return {};
}

/// "X.app" when @p program is "X.app/Contents/MacOS/…", else "".
QString appAround(const QString &program)
{
    const QString folder = QFileInfo(program).path();
    const QString app = folder.chopped(folder.endsWith(u"/Contents/MacOS") ? 15 : 0);
    return app.endsWith(u".app") ? app : QString();
}

/// The nearest "X.framework" above @p file, or "".
QString frameworkAround(const QString &file)
{
    for (QString at = QFileInfo(file).path(); at.size() > 1; at = QFileInfo(at).path())
        if (isFramework(at))
            return at;
    return {};
}

QString bundlePathForProgram(const QString &program)
{
    const QString app = appAround(program);
    return app.isEmpty() ? QFileInfo(program).path() : app;
}

/// The file whose code holds @p address, without links; "" for none.
QString codeFile(const void *address)
{
    Dl_info found{};
    link_map *map = nullptr;
    if (::dladdr1(address, &found, reinterpret_cast<void **>(&map), RTLD_DL_LINKMAP) == 0)
        return {};
    const bool program = !map || !map->l_name || !*map->l_name; // its name is as it was typed, perhaps elsewhere
    return program ? programPath() : QFileInfo(QFile::decodeName(found.dli_fname)).canonicalFilePath();
}
} // namespace

Bundle::Bundle(QString path)
    : d(std::make_shared<Private>())
{
    d->path = QDir::cleanPath(path);
}

Bundle::Bundle(const Bundle &other) = default;
Bundle &Bundle::operator=(const Bundle &other) = default;
Bundle::~Bundle() = default;

Bundle Bundle::forExecutable()
{
    return Bundle(bundlePathForProgram(programPath()));
}

Bundle Bundle::forAddress(const void *address)
{
    const QString file = codeFile(address);
    const QString app = appAround(file); // the nearer one where an application lies in a framework
    const QString framework = app.isEmpty() ? frameworkAround(file) : QString();
    return Bundle(framework.isEmpty() ? bundlePathForProgram(file) : framework);
}

const QString &Bundle::path() const
{
    return d->path;
}

QString Bundle::identifier() const
{
    return objectForInfoDictionaryKey(QStringLiteral("CFBundleIdentifier")).toString();
}

QVariant Bundle::objectForInfoDictionaryKey(const QString &key) const
{
    return infoDictionary().value(key);
}

const QVariantMap &Bundle::infoDictionary() const
{
    std::optional<QVariantMap> &info = d->info;
    for (const char *place : infoPlaces) {
        if (info)
            break;
        info = PropertyList::dictionaryFromFile(path() + u'/' + QLatin1String(place));
    }
    if (!info)
        info.emplace();
    return *info;
}

QString Bundle::pathForResource(const QString &name, const QString &type) const
{
    const QString resources = resourcesPath();
    const QString file = type.isEmpty() ? name : QString(name + u'.' + type);
    for (const QString &folder : {bestLanguageFolder(resources), QString(), QStringLiteral("en.lproj")}) {
        const QString candidate = resources + u'/' + (folder.isEmpty() ? file : QString(folder + u'/' + file));
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return {};
}

QString Bundle::resourcesPath() const
{
    for (const char *place : resourcePlaces) {
        const QString candidate = path() + u'/' + QLatin1String(place);
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    if (isFramework(path()))
        return path() + u"/Versions/A/Resources";
    return isFlat(path()) ? path() : QString(path() + u"/Contents/Resources");
}

QString Bundle::executablePath() const
{
    const QString baseName = QFileInfo(path()).completeBaseName();
    if (isFramework(path()))
        return path() + u'/' + baseName;
    const QString listed = objectForInfoDictionaryKey(QStringLiteral("CFBundleExecutable")).toString();
    const QString program = programPath();
    if (listed.isEmpty() && path() == QFileInfo(program).path())
        return program;
    return path() + (isFlat(path()) ? u"/" : u"/Contents/MacOS/") + (listed.isEmpty() ? baseName : listed);
}

QString Bundle::localizedString(const QString &key) const
{
    std::optional<QVariantMap> &strings = d->strings;
    if (!strings)
        strings =
            PropertyList::dictionaryFromFile(pathForResource(QStringLiteral("Localizable"), QStringLiteral("strings")))
                .value_or(QVariantMap());
    const QVariant text = strings->value(key);
    return text.typeId() == QMetaType::QString ? text.toString() : key;
}

} // namespace platform
