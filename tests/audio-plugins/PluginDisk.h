#pragma once

#include <QWPlatform/foundation/Locations.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// A home folder and library root in a temporary folder, with what tests install there; LV2_PATH names its own folder.
class PluginDisk
{
public:
    PluginDisk()
    {
        QDir().mkpath(lv2Folder());
        qputenv("LV2_PATH", QFile::encodeName(lv2Folder()));
    }

    QString home() const { return m_disk.filePath("home"); }
    QString root() const { return m_disk.filePath("root"); }
    QString lv2Folder() const { return m_disk.filePath("lv2"); }
    QString support(const QString &name) const { return home() + "/Library/Application Support/Quorwell/" + name; }
    QString auHandOff() const { return support("validated_au.plist"); }   ///< What a validator writes of a good unit.
    QString vstHandOff() const { return support("validated_vst.plist"); } ///< Of a good VST.
    platform::Locations locations() const { return {home(), root()}; }

    /// Copies a built test bundle into @p folder; its files get the time of now.
    static QString install(const QString &kind, const QString &name, const QString &folder)
    {
        const QString from = QStringLiteral(QW_TEST_PLUGINS "/") + kind + '/' + name;
        const QString to = folder + '/' + name;
        copyTree(from, to);
        return to;
    }

    QString installLv2(const QString &name) const { return install("lv2", name + ".lv2", lv2Folder()); }
    QString installComponent(const QString &name) const
    {
        return install("Components", name + ".component", home() + "/Library/Audio/Plug-Ins/Components");
    }
    QString installVst(const QString &name) const
    {
        return install("VST", name + ".vst", home() + "/Library/Audio/Plug-Ins/VST");
    }

    static void write(const QString &path, const QByteArray &data)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    struct Run
    {
        bool crashed = false;
        int status = -1;
        QByteArray output;
        QByteArray errors;
    };

    /// Runs a program with this home; without a network where that is allowed.
    Run run(QString program, QStringList arguments) const
    {
        static const bool canIsolate = QProcess::execute("unshare", {"-n", "true"}) == 0;
        if (canIsolate) {
            arguments = QStringList{"-n", program} + arguments;
            program = "unshare";
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home());
        environment.insert("QW_LIBRARY_ROOT", root());
        environment.insert("DISPLAY", ":77");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        process.waitForFinished(60000);
        return {process.exitStatus() == QProcess::CrashExit, process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

private:
    static void copyTree(const QString &from, const QString &to)
    {
        QDir().mkpath(to);
        for (const QFileInfo &entry : QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            if (entry.isDir())
                copyTree(entry.filePath(), to + '/' + entry.fileName());
            else
                QFile::copy(entry.filePath(), to + '/' + entry.fileName());
        }
    }

    QTemporaryDir m_disk;
};
