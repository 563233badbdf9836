#include "StartupProbe.h"

#include <QWBase/QWApplication.h>

// A host without splash screen and managers: launched, and ended in the first turn of the event loop.
int main(int argc, char **argv)
{
    QWApplication application(argc, argv);
    endInFirstTurn();
    return QWApplication::exec();
}
