// The host of tst_GridRule: prints what an observer of the grid is told, a line each, until its input ends.
#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

namespace
{
class Printer : public QWMonomeRemoteObserver
{
public:
    void monomeRemoteConnected(QWMonomeRemote &remote) override
    {
        std::printf("connected %u, %u buttons\n", remote.serialNumber(), remote.numberOfButtons());
    }

    void monomeRemoteRemoved(QWMonomeRemote &) override { std::puts("removed"); }

    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition position) override
    {
        std::printf("down %g %g\n", static_cast<double>(position.x), static_cast<double>(position.y));
    }
};
} // namespace

int main(int argc, char **argv)
{
    setlinebuf(stdout);
    QCoreApplication application(argc, argv);
    Printer printer;
    QWMonomeRemote::remote().addObserver(printer);
    std::puts("ready");
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [] {
        char bytes[64];
        if (::read(STDIN_FILENO, bytes, sizeof bytes) <= 0)
            QCoreApplication::quit();
    });
    const int status = QCoreApplication::exec();
    QWMonomeRemote::remote().removeObserver(printer);
    return status;
}
