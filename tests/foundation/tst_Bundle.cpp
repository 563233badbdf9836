#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;

class tst_Bundle : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void infoIsFoundInEveryLayout_data()
    {
        QTest::addColumn<QString>("bundle");
        QTest::addColumn<QString>("info");
        QTest::newRow("application") << "X.app"
                                     << "Contents/Info.plist";
        QTest::newRow("framework") << "X.framework"
                                   << "Versions/A/Resources/Info.plist";
        QTest::newRow("framework, by its link") << "X.framework"
                                                << "Versions/Current/Resources/Info.plist";
        QTest::newRow("flat framework") << "X.framework"
                                        << "Resources/Info.plist";
        QTest::newRow("folder") << "bin"
                                << "Info.plist";
    }

    void infoIsFoundInEveryLayout()
    {
        QFETCH(QString, bundle);
        QFETCH(QString, info);
        write(bundle + "/" + info, PropertyList::toXml(QVariantMap{{"CFBundleIdentifier", "com.example.x"}, {"n", 1}}));
        const Bundle found(path(bundle));
        QCOMPARE(found.identifier(), "com.example.x");
        QCOMPARE(found.objectForInfoDictionaryKey("n"), QVariant(1));
        QVERIFY(!found.objectForInfoDictionaryKey("missing").isValid());
    }

    void missingOrBrokenInfoIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("info");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("garbage") << QByteArray("\x7f"
                                               "ELF");
        QTest::newRow("cut short") << PropertyList::toXml(QVariantMap{{"CFBundleIdentifier", "x"}}).chopped(2);
        QTest::newRow("array") << PropertyList::toXml(QVariantList{1});
        QTest::newRow("wrong types") << PropertyList::toXml(QVariantMap{{"CFBundleIdentifier", QVariantList{1}}});
    }

    void missingOrBrokenInfoIsEmpty()
    {
        QFETCH(QByteArray, info);
        if (!info.isEmpty())
            write("X.vst/Contents/Info.plist", info);
        const Bundle bundle(path("X.vst"));
        QCOMPARE(bundle.identifier(), QString());
        QCOMPARE(bundle.pathForResource("a", "txt"), QString());
        QCOMPARE(bundle.localizedString("key"), "key");
    }

    void resourcesComeFromTheBestLanguage()
    {
        for (const char *folder : {"de.lproj/", "", "en.lproj/", "fr.lproj/"})
            write(QString("X.app/Contents/Resources/%1a.txt").arg(folder), folder);
        write("X.app/Contents/Resources/b.txt", "b");
        write("X.app/Contents/Resources/en.lproj/c.txt", "c");
        write("X.app/Contents/Resources/fr.lproj/d", "d");
        const Bundle bundle(path("X.app"));
        const QString resources = path("X.app/Contents/Resources");
        QCOMPARE(bundle.resourcesPath(), resources);
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
        QCOMPARE(bundle.pathForResource("a", "txt"), resources + "/de.lproj/a.txt");
        QCOMPARE(bundle.pathForResource("b", "txt"), resources + "/b.txt");
        QCOMPARE(bundle.pathForResource("c", "txt"), resources + "/en.lproj/c.txt");
        QCOMPARE(bundle.pathForResource("d", ""), QString());
        QLocale::setDefault(QLocale(QLocale::Italian));
        QCOMPARE(bundle.pathForResource("a", "txt"), resources + "/a.txt");
        QLocale::setDefault(QLocale::c());
        QCOMPARE(bundle.pathForResource("a", "txt"), resources + "/en.lproj/a.txt");
    }

    void olderLanguageFoldersCount()
    {
        write("X.app/Contents/Resources/German.lproj/Localizable.strings", "\"Quit\" = \"Beenden\"; n = (1);");
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(Bundle(path("X.app")).localizedString("Quit"), "Beenden");
        QCOMPARE(Bundle(path("X.app")).localizedString("n"), "n");
    }

    void brokenTablesGiveTheKeys_data()
    {
        QTest::addColumn<QByteArray>("table");
        const QByteArray whole = "\"Quit\" = \"Beenden\"";
        for (qsizetype size = 0; size <= whole.size(); ++size) // without its last character, the ";"
            QTest::addRow("%d characters", int(size)) << whole.first(size);
        QTest::newRow("garbage") << QByteArray("\x7f\0ELF\xff", 6);
        QTest::newRow("array") << PropertyList::toXml(QVariantList{"Quit"});
        QTest::newRow("a number") << PropertyList::toXml(QVariantMap{{"Quit", 1}});
    }

    void brokenTablesGiveTheKeys()
    {
        QFETCH(QByteArray, table);
        write("X.app/Contents/Resources/en.lproj/Localizable.strings", table);
        QCOMPARE(Bundle(path("X.app")).localizedString("Quit"), "Quit");
    }

    void executablesAreFound_data()
    {
        QTest::addColumn<QString>("bundle");
        QTest::addColumn<QString>("listed"); // CFBundleExecutable
        QTest::addColumn<QString>("program");
        QTest::newRow("listed") << "X.app"
                                << "Y"
                                << "X.app/Contents/MacOS/Y";
        QTest::newRow("not listed") << "X.Y.app"
                                    << ""
                                    << "X.Y.app/Contents/MacOS/X.Y";
        QTest::newRow("plug-in") << "X.vst"
                                 << "Y"
                                 << "X.vst/Contents/MacOS/Y";
        QTest::newRow("framework") << "X.framework"
                                   << "Y"
                                   << "X.framework/X";
    }

    void executablesAreFound()
    {
        QFETCH(QString, bundle);
        QFETCH(QString, listed);
        QFETCH(QString, program);
        write(bundle + "/Contents/Info.plist", PropertyList::toXml(QVariantMap{{"CFBundleExecutable", listed}}));
        QCOMPARE(Bundle(path(bundle)).executablePath(), path(program));
    }

    void aProgramOutsideAnyBundleIsItsFolder()
    {
        const Bundle bundle = Bundle::forExecutable();
        QCOMPARE(bundle.path(), QFileInfo(QCoreApplication::applicationFilePath()).canonicalPath());
        QCOMPARE(bundle.executablePath(), QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());
        QCOMPARE(Bundle::forClassOf(*this).path(), bundle.path());
    }

    void codeLiesInTheFrameworkItWasLinkedFrom()
    {
        const Bundle bundle = Bundle::forClassOf(System::current().clock());
        QVERIFY2(bundle.path().endsWith("/QWPlatform.framework"), qPrintable(bundle.path()));
        QCOMPARE(bundle.executablePath(), bundle.path() + "/QWPlatform");
        QVERIFY(QFileInfo::exists(bundle.executablePath()));
        QVERIFY(QFileInfo(bundle.executablePath()).isSymLink());
    }

    void addressesOutsideAnyCodeHaveNoBundle()
    {
        const Bundle bundle = Bundle::forAddress(nullptr);
        QCOMPARE(bundle.identifier(), QString());
    }

    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    void write(const QString &name, const QByteArray &data) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(tst_Bundle)
#include "tst_Bundle.moc"
