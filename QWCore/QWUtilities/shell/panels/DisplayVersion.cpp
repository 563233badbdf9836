#include "DisplayVersion.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/Localization.h>

namespace qw
{

namespace
{
struct Mark
{
    const char *text;
    const char *words;
};

// "pb" and "rc" come first: they would lose their "b" otherwise.
constexpr Mark marks[] = {
    {"pb", " Public Beta "},
    {"rc", " Release Candidate "},
    {"b", " Beta "},
    {"a", " Alpha "},
};
} // namespace

QString displayVersion(QString version)
{
    for (const Mark &mark : marks)
        if (version.contains(QLatin1String(mark.text)))
            return version.replace(QLatin1String(mark.text), platform::localized(mark.words));
    return version;
}

QString displayVersionOfHost()
{
    const platform::Bundle &host = platform::System::current().mainBundle();
    return displayVersion(host.objectForInfoDictionaryKey("CFBundleShortVersionString").toString());
}

QString copyrightLine()
{
    const int year = platform::System::current().clock().now().date().year();
    return platform::formatted(platform::localized("%C 2004-%d Quorwell Engineering. All rights reserved."),
                               {QString(QChar(0xA9)), QString::number(year)});
}

} // namespace qw
