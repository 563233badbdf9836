#include "StartupProbe.h"

#include <QApplication>

// What the host is compared with: a bare application, linked to the same Qt modules.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    endInFirstTurn();
    return QApplication::exec();
}
