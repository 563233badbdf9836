// The other process of tst_LinuxInstanceLink: listens for a bundle identifier and prints what it gets, until its input
// ends; with --hand-over, hands the further arguments over instead; with --static, listens and leaves at once.
#include <QWPlatform/linux/desktop/LinuxInstanceLink.h>

#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <unistd.h>

namespace
{
void print(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

int listen(const QString &identifier)
{
    platform::LinuxInstanceLink link;
    const bool listening = link.listen(identifier, print);
    print(listening ? "listening" : "refused");
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.value(0) == u"--static") {
        static platform::LinuxInstanceLink link;
        return link.listen(arguments.value(1), print) ? 0 : 1;
    }
    if (arguments.value(0) != u"--hand-over")
        return listen(arguments.value(0));
    return platform::LinuxInstanceLink().handOver(arguments.value(1), arguments.mid(2)) ? 0 : 1;
}
