#include <QWBase/files/QWPathStrings.h>

#include <QTest>

class tst_QWPathStrings : public QObject
{
    Q_OBJECT

private slots:
    void filenameIsTheDisplayName_data();
    void filenameIsTheDisplayName();
    void lastComponentIsReplaced_data();
    void lastComponentIsReplaced();
};

void tst_QWPathStrings::filenameIsTheDisplayName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plug-in") << "/Library/Audio/Plug-Ins/VST/Acme/Echo.vst"
                             << "Echo";
    QTest::newRow("entry name") << "Echo.vst"
                                << "Echo";
    QTest::newRow("upper case") << "Echo.VST"
                                << "Echo";
    QTest::newRow("trailing slash") << "/a/Echo.vst//"
                                    << "Echo";
    QTest::newRow("dots in the name") << "Room 2.5.vst"
                                      << "Room 2.5";
    QTest::newRow("version, no extension") << "Room 2.5"
                                           << "Room 2.5";
    QTest::newRow("only one goes") << "Echo.vst.vst"
                                   << "Echo.vst";
    QTest::newRow("unknown extension") << "notes.txt"
                                       << "notes.txt";
    QTest::newRow("exchange file") << "/a/My Keys.qwshortcuts"
                                   << "My Keys";
    QTest::newRow("sound") << "take 1.AIFF"
                           << "take 1";
    QTest::newRow("no name before it") << "/a/.vst"
                                       << ".vst";
    QTest::newRow("dot at the end") << "/a/Echo."
                                    << "Echo.";
    QTest::newRow("folder with an extension") << "/a.vst/Echo"
                                              << "Echo";
    QTest::newRow("letters of all kinds") << "/a/日本 & 🎹.vst"
                                          << "日本 & 🎹";
    QTest::newRow("root") << "/"
                          << "/";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_QWPathStrings::filenameIsTheDisplayName()
{
    QFETCH(QString, path);
    QTEST(QWPathStrings::filename(path), "expected");
}

void tst_QWPathStrings::lastComponentIsReplaced_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("component");
    QTest::addColumn<QString>("expected");
    QTest::newRow("in a framework") << "/F/QWUtilities.framework/QWUtilities"
                                    << "Versions/A/AU Validator"
                                    << "/F/QWUtilities.framework/Versions/A/AU Validator";
    QTest::newRow("one component") << "a"
                                   << "b"
                                   << "b";
    QTest::newRow("below the root") << "/a"
                                    << "b"
                                    << "/b";
    QTest::newRow("trailing slash") << "/a/b/"
                                    << "c"
                                    << "/a/c";
    QTest::newRow("root") << "/"
                          << "a"
                          << "/a";
    QTest::newRow("empty") << ""
                           << "a"
                           << "a";
    QTest::newRow("emptied") << "/a/b"
                             << ""
                             << "/a/";
}

void tst_QWPathStrings::lastComponentIsReplaced()
{
    QFETCH(QString, path);
    QFETCH(QString, component);
    QWPathStrings::replaceLastPathComponent(path, component);
    QTEST(path, "expected");
}

QTEST_APPLESS_MAIN(tst_QWPathStrings)
#include "tst_QWPathStrings.moc"
