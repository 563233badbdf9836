// The process of tst_LinuxKeyboardState that has an X server: prints its key map, in hexadecimal, for each line it
// reads.
#include <QWPlatform/linux/desktop/LinuxKeyboardState.h>

#include <QGuiApplication>
#include <QTextStream>

#include <iostream>

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    platform::LinuxKeyboardState keyboard;
    QTextStream(stdout) << QGuiApplication::platformName() << Qt::endl;
    for (std::string line; std::getline(std::cin, line);) {
        const platform::KeyMap map = keyboard.keyMap();
        const QByteArray bytes(reinterpret_cast<const char *>(map.data()), static_cast<qsizetype>(map.size()));
        QTextStream(stdout) << bytes.toHex() << Qt::endl;
    }
    return 0;
}
