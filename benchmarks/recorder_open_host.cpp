#include <QWBase/QWApplication.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace
{
QAbstractItemView *table()
{
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (auto *view = window->findChild<QAbstractItemView *>("recordingTable"))
            return view;
    return nullptr;
}
} // namespace

/// Opens the browser of recorders and prints how many milliseconds it took until the takes of the first one stood in
/// its table; argument: how many takes that has.
int main(int argc, char **argv)
{
    QWApplication application(argc, argv);
    QEventLoop().processEvents();
    const int takes = argc > 1 ? std::atoi(argv[1]) : 0;
    QElapsedTimer watch;
    watch.start();
    QWVeskBrowser::openWindow();
    const QAbstractItemView *view = table();
    if (!view)
        return 1;
    QTimer::singleShot(std::chrono::seconds(30), [] { std::exit(1); });
    while (view->model()->rowCount() != takes)
        application.processEvents(QEventLoop::WaitForMoreEvents);
    std::printf("%f\n", static_cast<double>(watch.nsecsElapsed()) / 1e6);
    std::fflush(stdout);
    std::_Exit(0); // what comes after is not measured
}
