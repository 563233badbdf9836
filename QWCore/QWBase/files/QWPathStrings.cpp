#include "QWPathStrings.h"

#include <algorithm>
#include <array>

namespace QWPathStrings
{

namespace
{
/// Extensions that are not part of a display name.
constexpr std::array hiddenExtensions = {
    u"vst",         u"vst3",          u"component", u"lv2",  u"app", u"framework", u"bundle", u"plugin", // bundles
    u"qwshortcuts", u"tovrshortcuts", u"plist",                                                          // product
    u"wav",         u"aif",           u"aiff",      u"aifc", u"caf", u"flac",      u"ogg",    u"mp3",    // sound
    u"m4a",         u"spx",
};

QStringView withoutTrailingSlashes(QStringView path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

bool isHidden(QStringView extension)
{
    return std::any_of(hiddenExtensions.begin(), hiddenExtensions.end(),
                       [&](QStringView hidden) { return extension.compare(hidden, Qt::CaseInsensitive) == 0; });
}
} // namespace

QString filename(const QString &path)
{
    const QStringView whole = withoutTrailingSlashes(path);
    const QStringView name = whole.size() > 1 ? whole.mid(whole.lastIndexOf(u'/') + 1) : whole;
    const qsizetype dot = name.lastIndexOf(u'.');
    return (dot > 0 && isHidden(name.mid(dot + 1)) ? name.left(dot) : name).toString();
}

void replaceLastPathComponent(QString &path, const QString &component)
{
    const QStringView whole = withoutTrailingSlashes(path);
    path = whole.left(whole.lastIndexOf(u'/') + 1).toString() + component;
}

} // namespace QWPathStrings
