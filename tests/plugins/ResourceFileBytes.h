#pragma once

#include <QByteArray>

/// A resource file with one 'thng' (aufx, Dlay, Acme) and one 'STR ' ("Acme: Super Delay").
inline QByteArray resourceFileBytes()
{
    QByteArray file = QByteArray::fromHex("00000100000001460000004600000046");
    file.resize(256, '\0');
    file += QByteArray::fromHex("0000002c61756678446c617941636d65000000000000000064"
                                "6c6c6503e8535452200080535452"
                                "20007f49434f4e0080"
                                "00000012"
                                "1141636d653a2053757065722044656c6179"
                                "000000000000000000000000000000000000000000000000"
                                "001c00460001"
                                "74686e6700000012535452200000001e"
                                "0080ffff0000000000000000"
                                "0080ffff0000003000000000");
    return file;
}
