#include "KeptHost.h"

int main(int argc, char **argv)
{
    KeptHost host(argc, argv);
    return KeptHost::exec();
}
