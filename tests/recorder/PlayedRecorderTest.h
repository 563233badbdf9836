#pragma once

#include "BrowserDriver.h"
#include "NetworkedMachine.h"

#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <simulators/Curl.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QDir>

/// The window of recorders before a recorder that is played, with six takes, over the loopback interface and onto a
/// real disk.
class PlayedRecorderTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void initTestCase() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/none/such"); } // whoever else is announced

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_recorder = std::make_unique<RecorderSimulator>();
        m_recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 0.5, .withProgram = true}));
        QVERIFY(m_recorder->listen());
    }

    void cleanup()
    {
        m_machine.reset();
        m_recorder.reset();
    }

protected:
    /// Opens the window and waits for so many takes.
    void _open(int takes)
    {
        m_machine = std::make_unique<NetworkedMachine>(QString("Vesk on Studio=127.0.0.1:%1").arg(m_recorder->port()));
        QWVeskBrowser::openWindow();
        QVERIFY(m_user.listsTakes(takes));
    }

    bool _save(int first, int last, const QString &format)
    {
        m_user.select(first, last);
        if (!m_user.chooseFormat(format))
            return false;
        m_user.saveButton()->click();
        m_machine->system.filePanels.endOpen(platform::FilePanels::OK, {m_folder->path()});
        return m_user.isSaving();
    }

    /// As from the window system. The off-screen one gives the keys to nobody when a sheet goes.
    void _press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = {})
    {
        BrowserDriver::window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(BrowserDriver::window()));
        for (int press = 0; press < times; ++press)
            QTest::keyClick(BrowserDriver::window()->windowHandle(), key, modifiers);
    }

    QByteArray _fetched(const RecorderTake &take, const QString &code) const
    {
        return Curl::fetched(
                   QString("%1/download?filename=%2&format=%3").arg(m_recorder->address(), take.filename, code))
            .body;
    }

    QString _path(const QString &name) const { return m_folder->filePath(name); }

    QString _pathOf(int row, const QString &extension) const
    {
        return _path(BrowserDriver::title(row) + '.' + extension);
    }

    QStringList _entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderSimulator> m_recorder;
    std::unique_ptr<NetworkedMachine> m_machine;
    BrowserDriver m_user;
};
