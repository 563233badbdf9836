// Listens to the machine's remote and prints what it hears until the given number of calls came, or ten seconds went
// by.
#include <QWUtilities/controllers/QWRemoteControl.h>
#include <QWUtilities/controllers/QWRemoteControlListener.h>

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

class PrintingListener : public QWRemoteControlListener
{
public:
    explicit PrintingListener(int expected)
        : m_missing(expected)
    {
    }

    void remoteControlButtonDown(QWRemoteControl &, unsigned button) override { _print("down", button); }
    void remoteControlButtonUp(QWRemoteControl &, unsigned button) override { _print("up", button); }

private:
    void _print(const char *what, unsigned button)
    {
        std::printf("%s %u\n", what, button);
        if (--m_missing == 0)
            QCoreApplication::quit();
    }

    int m_missing;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    PrintingListener listener(argc > 1 ? std::atoi(argv[1]) : 0);
    auto &remote = QWRemoteControl::remoteControl();
    remote.addListener(&listener);
    std::printf(remote.isActive() ? "active\n" : "idle\n");
    if (!remote.isActive())
        return 1;
    QTimer::singleShot(10'000, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
