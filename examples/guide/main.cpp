#include "MyApplication.h"

int main(int argc, char **argv)
{
    MyApplication application(argc, argv);
    return MyApplication::exec(); // QWApplication's own exec(), which launches first
}
