#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>

/// A monome grid as its host sees it, in either protocol: bytes in, LEDs; buttons, bytes out.
class GridDevice
{
public:
    struct Model
    {
        const char *name; ///< What serial numbers of this model begin with.
        int columns;
        int rows;
        bool is40h;
    };

    static constexpr int largest = 16; ///< Columns and rows.

    /// The model of a serial number such as "m64-0123"; none for others.
    static std::optional<Model> modelOfSerial(const QString &serial);

    explicit GridDevice(const Model &model);

    const Model &model() const { return m_model; }

    /// Follows what the host sent; a message may come in pieces.
    void receive(const QByteArray &bytes);

    /// As when the host opens the line anew: what was begun is forgotten, the LEDs stay.
    void restart() { m_message.clear(); }

    bool led(int column, int row) const;

    /// Brightness, 0 to 15.
    int level() const { return m_level; }

    /// Bytes that meant nothing, so far.
    int misunderstood() const { return m_misunderstood; }

    /// What the device sends for a button.
    QByteArray buttonMessage(int column, int row, bool down) const;

private:
    using Bytes = std::array<quint8, 9>;

    int _messageLength() const;
    void _obey();
    void _obeySeries(const Bytes &bytes);
    void _obey40h(quint8 data, quint8 command);
    void _setLED(int column, int row, bool on);
    void _setRow(int row, int firstColumn, quint8 bits);
    void _setColumn(int column, int firstRow, quint8 bits);
    void _setAll(bool on);

    const Model m_model;
    std::array<quint16, largest> m_rows{}; ///< Bit n is column n.
    int m_level = 15;
    int m_misunderstood = 0;
    QByteArray m_message; ///< Begun.
};
