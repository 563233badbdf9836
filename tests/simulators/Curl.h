#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// What the program curl got, while this process's event loop ran.
struct Curl
{
    int exitCode = -1; ///< 0: curl is content; 18: cut short, 28: no end in time, 47: a ring, 52: nothing came.
    int status = 0;    ///< Of the last answer; 0 without one.
    QByteArray head;
    QByteArray body;

    /// @p further: arguments ahead of the address.
    static Curl fetched(const QString &address, const QStringList &further = {})
    {
        const QTemporaryDir folder;
        QProcess program;
        program.start("curl", QStringList{"--silent", "--globoff", "--path-as-is", "--noproxy", "*", "--max-time", "60",
                                          "--dump-header", folder.filePath("head"), "--output", folder.filePath("body"),
                                          "--write-out", "%{http_code}"} +
                                  further + QStringList{address});
        const auto hasEnded = [&program] { return program.state() == QProcess::NotRunning; };
        if (!QTest::qWaitFor(hasEnded, 90'000))
            qFatal("curl has no end");
        return {program.exitCode(), program.readAllStandardOutput().toInt(), contentsOf(folder.filePath("head")),
                contentsOf(folder.filePath("body"))};
    }

    static QByteArray contentsOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};
