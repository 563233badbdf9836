#include "ManualArchives.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace manuals
{
QByteArray pageWithVersion(const QByteArray &version)
{
    return "<html><head><meta charset=\"utf-8\"><meta name=\"qw_manual_version\" content=\"" + version +
           "\"><title>Manual</title></head><body><h1>Manual " + version + "</h1></body></html>";
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

void writeTo(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

QByteArray archiveOf(const QByteArray &script)
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/Manual.zip";
    QProcess python;
    python.start("python3", {"-c",
                             QString::fromUtf8("import sys,zipfile\n"
                                               "z=zipfile.ZipFile(sys.argv[1],'w')\n"
                                               "def link(name,to):\n"
                                               "  i=zipfile.ZipInfo(name); i.create_system=3\n"
                                               "  i.external_attr=0o120777<<16; z.writestr(i,to)\n" +
                                               script + "\nz.close()\n"),
                             path});
    if (!python.waitForFinished() || python.exitCode() != 0)
        qFatal("%s", python.readAllStandardError().constData());
    return contentsOf(path);
}

QByteArray goodArchive(const QByteArray &version)
{
    return archiveOf("z.writestr('index.html','''" + pageWithVersion(version) + "''')\nz.writestr('more/b.html','b')");
}
} // namespace manuals
