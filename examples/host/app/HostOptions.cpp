#include "HostOptions.h"

#include <QFileInfo>
#include <QUrl>

#include <functional>

namespace demo
{

namespace
{
using platform::ThemeChoice;

QString absolute(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

bool setTheme(HostOptions &options, const QString &value)
{
    options.theme = value == QLatin1String("dark") ? ThemeChoice::Dark : ThemeChoice::Light;
    return value == QLatin1String("dark") || value == QLatin1String("light");
}

bool setScale(HostOptions &options, const QString &value)
{
    options.scale = value.toInt();
    return options.scale == 1 || options.scale == 2;
}

bool setText(QString &option, const QString &value)
{
    option = value;
    return !value.isEmpty();
}

struct Option
{
    const char *name;
    const char *value; ///< Name of its value for the help; null: it has none.
    const char *help;
    std::function<bool(HostOptions &, const QString &)> set;
};

const std::vector<Option> &options()
{
    static const std::vector<Option> table{
        {"--home", "DIR", "folder to use as home (default: one of its own in the build folder)",
         [](HostOptions &o, const QString &v) { return setText(o.home, v.isEmpty() ? v : absolute(v)); }},
        {"--real-home", nullptr, "use your own home folder",
         [](HostOptions &o, const QString &) { return o.realHome = true; }},
        {"--tour", "DIR", "open every window in turn, put their pictures into DIR and quit",
         [](HostOptions &o, const QString &v) { return setText(o.tour, v.isEmpty() ? v : absolute(v)); }},
        {"--theme", "light|dark", "colours (default: the desktop's)", setTheme},
        {"--scale", "1|2", "pixels for each unit of length (default: the desktop's)", setScale},
        {"--support-site", "URL", "base address of the support site",
         [](HostOptions &o, const QString &v) { return setText(o.supportSite, v); }},
        {"--quit", nullptr, "quit as soon as the launch is over, to time it",
         [](HostOptions &o, const QString &) { return o.quit = true; }},
        {"--help", nullptr, "show this text", [](HostOptions &o, const QString &) { return o.help = true; }},
    };
    return table;
}

const Option *optionNamed(const QString &name)
{
    for (const Option &option : options()) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

// Takes "--name value" and "--name=value" from @p arguments; false, and a sentence, when it makes no sense.
bool takeOption(HostOptions &result, const QString &argument, QStringList &rest, QString *error)
{
    const Option *option = optionNamed(argument.section('=', 0, 0));
    if (!option) {
        *error = QStringLiteral("There is no option %1.").arg(argument);
        return false;
    }
    QString value = argument.contains('=') ? argument.section('=', 1) : QString();
    if (option->value && !argument.contains('=') && !rest.isEmpty())
        value = rest.takeFirst();
    if (option->set(result, value))
        return true;
    *error = QStringLiteral("The option %1 needs a value: %2.")
                 .arg(QLatin1String(option->name), QLatin1String(option->value));
    return false;
}

// A path, or the path of a file's address; none for other addresses, which the application object delivers.
QStringList fileOf(const QString &argument)
{
    const QUrl url(argument);
    if (url.isLocalFile())
        return {url.toLocalFile()};
    return argument.contains(QLatin1String("://")) ? QStringList() : QStringList{absolute(argument)};
}

QString contradictionIn(const HostOptions &options)
{
    if (options.realHome && !options.home.isEmpty())
        return QStringLiteral("--home and --real-home exclude one another.");
    if (options.realHome && !options.tour.isEmpty())
        return QStringLiteral(
            "The tour installs a broken plug-in for one of its pictures, so it needs a home of its own.");
    return {};
}
} // namespace

std::optional<HostOptions> HostOptions::parse(const QStringList &arguments, QString *error)
{
    HostOptions result;
    QStringList rest = arguments;
    while (!rest.isEmpty()) {
        const QString argument = rest.takeFirst();
        if (!argument.startsWith(QLatin1String("--")))
            result.files += fileOf(argument);
        else if (!takeOption(result, argument, rest, error))
            return std::nullopt;
    }
    *error = contradictionIn(result);
    return error->isEmpty() ? std::optional(result) : std::nullopt;
}

QString HostOptions::helpText()
{
    QString text =
        QStringLiteral("Usage: Tine [options] [sound file …]\n\nOpens a sound file, runs it through the plug-ins "
                       "of this machine and shows what they did.\n\n");
    for (const Option &option : options()) {
        const QString left = QStringLiteral("  %1 %2").arg(QLatin1String(option.name), QLatin1String(option.value));
        text += left.leftJustified(26) + QLatin1String(option.help) + '\n';
    }
    return text;
}

} // namespace demo
