#include "app/DemoApplication.h"
#include "app/HostOptions.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace
{
// The home must be in place before anything asks for a folder; children inherit it.
void useHome(const QString &home)
{
    QDir().mkpath(home + "/root");
    qputenv("HOME", home.toLocal8Bit());
    qputenv("QW_LIBRARY_ROOT", (home + "/root").toLocal8Bit());
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
}

QtMessageHandler passedOn = nullptr;

// Without a display the toolkit says so at every window that is raised or faded, which hides what the tour says.
void passOn(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        passedOn(type, context, message);
}

// A display without a screen of its own is given one on which all windows fit at that scale.
void useScreen(const QString &folder, int scale)
{
    QFile file(folder + "/screen.json");
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly))
        return;
    file.write(QString(R"({"screens": [{"name": "tour", "x": 0, "y": 0, "width": %1, "height": %2, )"
                       R"("logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                   .arg(1600 * scale)
                   .arg(1000 * scale)
                   .toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
}

void prepareEnvironment(const demo::HostOptions &options)
{
    if (!options.realHome)
        useHome(options.home.isEmpty() ? QString(QW_DEMO_HOME) : options.home);
    if (options.scale > 0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
    const bool hasDisplay = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (!options.tour.isEmpty() && !hasDisplay && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!options.tour.isEmpty() && qgetenv("QT_QPA_PLATFORM") == "offscreen")
        useScreen(qEnvironmentVariable("HOME") + "/Library/Caches", std::max(options.scale, 1));
}

// Where the tour plugs in a grid; its name has no digits, which would be taken for a model's.
std::unique_ptr<QTemporaryDir> makeDeviceFolder(const demo::HostOptions &options)
{
    if (options.tour.isEmpty() || qEnvironmentVariableIsSet("QW_SERIAL_DEVICES"))
        return nullptr;
    auto folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/tine-grid-XXXXXX");
    qputenv("QW_SERIAL_DEVICES", QFile::encodeName(folder->path()));
    return folder;
}
} // namespace

int main(int argc, char **argv)
{
    QString error;
    const auto options = demo::HostOptions::parse(QStringList(argv + 1, argv + argc), &error);
    if (!options) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    if (options->help) {
        std::fputs(qPrintable(demo::HostOptions::helpText()), stdout);
        return 0;
    }
    prepareEnvironment(*options);
    const auto devices = makeDeviceFolder(*options);
    if (!options->tour.isEmpty())
        passedOn = qInstallMessageHandler(passOn);
    demo::DemoApplication application(argc, argv, *options);
    return demo::DemoApplication::exec();
}
