#include "GridDevice.h"

#include <algorithm>

namespace
{
constexpr GridDevice::Model models[] = {
    {"m40h", 8, 8, true}, {"m64", 8, 8, false}, {"m128", 16, 8, false}, {"m256", 16, 16, false}};

/// By the high nibble of the first byte; 0: no message begins like this.
constexpr std::array<int, 16> seriesLengths{0, 0, 2, 2, 2, 2, 3, 3, 9, 1, 1, 1, 1, 1, 0, 0};
} // namespace

std::optional<GridDevice::Model> GridDevice::modelOfSerial(const QString &serial)
{
    for (const Model &model : models)
        if (serial.startsWith(model.name))
            return model;
    return std::nullopt;
}

GridDevice::GridDevice(const Model &model)
    : m_model(model)
{
}

void GridDevice::receive(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        m_message.append(byte);
        const int length = _messageLength();
        if (m_message.size() < length)
            continue;
        _obey();
        m_message.clear();
    }
}

bool GridDevice::led(int column, int row) const
{
    return m_rows[static_cast<std::size_t>(row)] & (1u << column);
}

QByteArray GridDevice::buttonMessage(int column, int row, bool down) const
{
    const quint8 kind = m_model.is40h ? (down ? 0x01 : 0x00) : (down ? 0x00 : 0x10);
    return QByteArray(1, static_cast<char>(kind)).append(static_cast<char>(column << 4 | row));
}

/// Of the message that was begun.
int GridDevice::_messageLength() const
{
    return m_model.is40h ? 2 : seriesLengths[static_cast<quint8>(m_message[0]) >> 4];
}

void GridDevice::_obey()
{
    Bytes bytes{};
    std::copy(m_message.begin(), m_message.end(), bytes.begin());
    if (m_model.is40h)
        _obey40h(bytes[0], bytes[1]);
    else
        _obeySeries(bytes);
}

void GridDevice::_obeySeries(const Bytes &bytes)
{
    const int low = bytes[0] & 0x0F;
    switch (bytes[0] >> 4) {
    case 2:
    case 3:
        return _setLED(bytes[1] >> 4, bytes[1] & 0x0F, bytes[0] >> 4 == 2);
    case 4:
        return _setRow(low, 0, bytes[1]);
    case 5:
        return _setColumn(low, 0, bytes[1]);
    case 6:
        _setRow(low, 0, bytes[1]);
        return _setRow(low, 8, bytes[2]);
    case 7:
        _setColumn(low, 0, bytes[1]);
        return _setColumn(low, 8, bytes[2]);
    case 8:
        for (int row = 0; row < 8; ++row)
            _setRow((low & 2 ? 8 : 0) + row, low & 1 ? 8 : 0, bytes[static_cast<std::size_t>(row) + 1]);
        return;
    case 9:
        return _setAll(low == 1);
    case 10:
        m_level = low;
        return;
    case 11:
    case 12:
    case 13:
        return; // modes and auxiliary ports
    default:
        ++m_misunderstood;
    }
}

/// The host sends the data byte first.
void GridDevice::_obey40h(quint8 data, quint8 command)
{
    switch (command >> 4) {
    case 2:
        return _setLED(data >> 4, data & 0x0F, command & 1);
    case 3:
        m_level = data & 0x0F;
        return;
    case 7:
        return _setRow(command & 0x0F, 0, data);
    case 8:
        return _setColumn(command & 0x0F, 0, data);
    default:
        m_misunderstood += 2;
    }
}

void GridDevice::_setLED(int column, int row, bool on)
{
    if (column >= m_model.columns || row >= m_model.rows)
        return; // hosts send more quadrants than a small grid has
    const auto bit = static_cast<quint16>(1u << column);
    quint16 &bits = m_rows[static_cast<std::size_t>(row)];
    bits = static_cast<quint16>(on ? bits | bit : bits & ~bit);
}

void GridDevice::_setRow(int row, int firstColumn, quint8 bits)
{
    for (int i = 0; i < 8; ++i)
        _setLED(firstColumn + i, row, bits & (1u << i));
}

void GridDevice::_setColumn(int column, int firstRow, quint8 bits)
{
    for (int i = 0; i < 8; ++i)
        _setLED(column, firstRow + i, bits & (1u << i));
}

void GridDevice::_setAll(bool on)
{
    for (int row = 0; row < m_model.rows; ++row)
        for (int column = 0; column < m_model.columns; ++column)
            _setLED(column, row, on);
}
