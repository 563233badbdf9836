#include "EndOnSignals.h"
#include "EndWithParent.h"
#include "GridScript.h"
#include "GridSimulator.h"
#include "GridWindow.h"

#include <QWPlatform/appkit/Theme.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QSocketNotifier>
#include <QTextStream>

#include <algorithm>
#include <cstring>
#include <unistd.h>

namespace
{
/// The application object needs to know before it reads its arguments.
void useNoDisplayWhenHeadless(int argc, char **argv)
{
    if (std::any_of(argv, argv + argc, [](const char *argument) { return std::strcmp(argument, "--headless") == 0; }))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void setUp(QCommandLineParser &options)
{
    options.setApplicationDescription(
        "Plays a monome grid on a pseudo-terminal and prints its path. Hosts that were started with QW_SERIAL_DEVICES "
        "set to the same folder find it there.");
    options.addHelpOption();
    options.addOptions({{"folder", "Folder for the device's link; without it QW_SERIAL_DEVICES says which.", "folder"},
                        {"serial", "Serial number: m40h…, m64-…, m128-… or m256-….", "serial", "m64-0123"},
                        {"headless", "Shows no window."},
                        {"script", "File of commands to run; - reads them from standard input.", "file"},
                        {"log", "File that gets each byte received, in hexadecimal, behind the milliseconds.", "file"},
                        {"theme", "light or dark, instead of the desktop's.", "theme"},
                        {"picture", "File that gets a picture of the window when the script quits.", "file"}});
}

QString deviceFolder(const QCommandLineParser &options)
{
    const QString folder = options.value("folder");
    if (!folder.isEmpty())
        return QDir::cleanPath(folder);
    return qEnvironmentVariable("QW_SERIAL_DEVICES", QDir::tempPath() + "/quorwell-serial");
}

platform::ThemeChoice theme(const QString &name)
{
    if (name == "dark")
        return platform::ThemeChoice::Dark;
    return name == "light" ? platform::ThemeChoice::Light : platform::ThemeChoice::System;
}

/// Commands come when they are written, so that a test can lead the grid.
void readFromStandardInput(GridScript &script)
{
    auto *const input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &script);
    QObject::connect(input, &QSocketNotifier::activated, &script, [&script, input, begun = QByteArray()]() mutable {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return input->setEnabled(false);
        begun.append(bytes, count);
        for (qsizetype end = begun.indexOf('\n'); end >= 0; end = begun.indexOf('\n')) {
            script.add(QString::fromUtf8(begun.left(end)));
            begun.remove(0, end + 1);
        }
    });
}

bool load(GridScript &script, const QString &path)
{
    if (path == "-") {
        readFromStandardInput(script);
        return true;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : file.readAll().split('\n'))
        script.add(QString::fromUtf8(line));
    return true;
}

int fail(const QString &message)
{
    QTextStream(stderr) << "qw-grid-simulator: " << message << Qt::endl;
    return 1;
}

/// @p picture: file that gets a picture of the window when the script quits; "" for none.
void connectScript(const GridScript &script, GridWindow &window, const QString &picture)
{
    QObject::connect(&script, &GridScript::printed, &window,
                     [](const QString &text) { QTextStream(stdout) << text << Qt::endl; });
    QObject::connect(&script, &GridScript::failed, &window,
                     [](const QString &line) { fail("not understood: " + line); });
    QObject::connect(&script, &GridScript::quitRequested, &window, [&window, picture] {
        if (!picture.isEmpty())
            window.grab().save(picture);
        QApplication::quit();
    });
}
} // namespace

int main(int argc, char **argv)
{
    endWithParent();
    useNoDisplayWhenHeadless(argc, argv);
    QApplication application(argc, argv);
    QApplication::setApplicationName("qw-grid-simulator");
    QCommandLineParser options;
    setUp(options);
    options.process(application);
    endOnSignals(application);
    platform::applyTheme(application, theme(options.value("theme")));

    GridSimulator grid(deviceFolder(options));
    if (options.isSet("log") && !grid.logTo(options.value("log")))
        return fail("cannot write " + options.value("log"));
    if (!grid.plug(options.value("serial")))
        return fail("cannot plug in " + options.value("serial"));
    QTextStream(stdout) << grid.link() << Qt::endl;

    GridWindow window(grid, options.value("serial"));
    GridScript script(grid);
    connectScript(script, window, options.value("picture"));
    if (options.isSet("script") && !load(script, options.value("script")))
        return fail("cannot read " + options.value("script"));
    if (!options.isSet("headless"))
        window.show();
    return QApplication::exec();
}
