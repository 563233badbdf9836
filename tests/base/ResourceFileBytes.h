#pragma once

#include <QByteArray>
#include <QString>

/// A resource file with one 'thng' (aufx, Dlay, Acme), to which @p things resources refer, at most 9, and one 'STR '
/// ("Acme: Super Delay").
inline QByteArray resourceFileBytes(int things = 1)
{
    const auto offset = [&](int ofOneThing) {
        return QByteArray::number(ofOneThing + 12 * (things - 1), 16).rightJustified(4, '0');
    };
    QByteArray file = QByteArray::fromHex("0000010000000146000000460000" + offset(0x46));
    file.resize(256, '\0');
    file += QByteArray::fromHex("0000002c61756678446c617941636d65000000000000000064"
                                "6c6c6503e8535452200080535452"
                                "20007f49434f4e0080"
                                "00000012"
                                "1141636d653a2053757065722044656c6179"
                                "000000000000000000000000000000000000000000000000"
                                "001c" +
                                offset(0x46) + "0001" + "74686e67000" + QByteArray::number(things - 1) +
                                "0012535452200000" + offset(0x1e) +
                                QByteArray("0080ffff0000000000000000").repeated(things) + "0080ffff0000003000000000");
    return file;
}
