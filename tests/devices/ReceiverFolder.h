#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// Folders laid out as the kernel's "/sys" and "/dev", with the input devices that the test adds.
class ReceiverFolder
{
public:
    QString sys() const { return m_folder.path() + "/sys"; }
    QString dev() const { return m_folder.path() + "/dev"; }
    QString node(int number) const { return dev() + "/input/event" + QString::number(number); }

    void addDevice(int number, const QByteArray &vendor, const QByteArray &product, const QString &driver = {}) const
    {
        const QString input = QString("%1/devices/hid%2/input%2").arg(sys()).arg(number);
        const QString event = input + "/event" + QString::number(number);
        _write(input + "/id/vendor", vendor + '\n');
        _write(input + "/id/product", product + '\n');
        QDir().mkpath(event);
        QDir().mkpath(sys() + "/class/input");
        QFile::link("..", event + "/device");
        QFile::link("..", input + "/device");
        if (!driver.isEmpty())
            QFile::link("../../bus/hid/drivers/" + driver, input + "/../driver");
        QFile::link(event, sys() + "/class/input/event" + QString::number(number));
    }

    void addReceiver(int number) const { addDevice(number, "05ac", "8242", "appleir"); }

    /// A regular file where the device node would be.
    void addNode(int number) const { _write(node(number), {}); }

private:
    static void _write(const QString &path, const QByteArray &data)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
            qFatal("Cannot write %s", qPrintable(path));
    }

    QTemporaryDir m_folder;
};
