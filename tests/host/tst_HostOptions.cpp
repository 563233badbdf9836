#include <app/HostOptions.h>

#include <QDir>
#include <QTest>

using demo::HostOptions;

class tst_HostOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingGivenAsksForNothing();
    void optionsAndFilesAreUnderstood();
    void relativePathsBecomeAbsolute();
    void nonsenseIsRefusedInWords_data();
    void nonsenseIsRefusedInWords();
    void helpNamesEveryOption();
};

void tst_HostOptions::nothingGivenAsksForNothing()
{
    QString error;
    const auto options = HostOptions::parse({}, &error);
    QVERIFY(options);
    QVERIFY(options->tour.isEmpty() && options->home.isEmpty() && options->files.isEmpty());
    QVERIFY(!options->realHome && !options->help);
    QCOMPARE(options->scale, 0);
}

void tst_HostOptions::optionsAndFilesAreUnderstood()
{
    QString error;
    const auto options =
        HostOptions::parse({"--home", "/a b", "--tour=/t", "--theme", "dark", "--scale", "2", "--support-site",
                            "http://127.0.0.1:1", "/x.wav", "file:///y%25z.wav", "tine://hello"},
                           &error);
    QVERIFY2(options, qPrintable(error));
    QCOMPARE(options->home, "/a b");
    QCOMPARE(options->tour, "/t");
    QCOMPARE(options->theme, platform::ThemeChoice::Dark);
    QCOMPARE(options->scale, 2);
    QCOMPARE(options->supportSite, "http://127.0.0.1:1");
    QCOMPARE(options->files, (QStringList{"/x.wav", "/y%z.wav"}));
}

void tst_HostOptions::relativePathsBecomeAbsolute()
{
    QString error;
    const auto options = HostOptions::parse({"--tour", "pictures", "x.wav"}, &error);
    QVERIFY(options);
    QCOMPARE(options->tour, QDir::current().absoluteFilePath("pictures"));
    QCOMPARE(options->files, QStringList{QDir::current().absoluteFilePath("x.wav")});
}

void tst_HostOptions::nonsenseIsRefusedInWords_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("unknown") << QStringList{"--nonsense"} << "There is no option --nonsense.";
    QTest::newRow("theme") << QStringList{"--theme", "pink"} << "The option --theme needs a value: light|dark.";
    QTest::newRow("scale") << QStringList{"--scale", "3"} << "The option --scale needs a value: 1|2.";
    QTest::newRow("no value") << QStringList{"--tour"} << "The option --tour needs a value: DIR.";
    QTest::newRow("two homes") << QStringList{"--home", "/h", "--real-home"}
                               << "--home and --real-home exclude one another.";
    QTest::newRow("tour of the real home")
        << QStringList{"--real-home", "--tour", "/t"}
        << "The tour installs a broken plug-in for one of its pictures, so it needs a home of its own.";
}

void tst_HostOptions::nonsenseIsRefusedInWords()
{
    QFETCH(QStringList, arguments);
    QString error;
    QVERIFY(!HostOptions::parse(arguments, &error));
    QTEST(error, "sentence");
}

void tst_HostOptions::helpNamesEveryOption()
{
    for (const char *option :
         {"--home DIR", "--real-home", "--tour DIR", "--theme light|dark", "--scale 1|2", "--support-site URL"})
        QVERIFY(HostOptions::helpText().contains(option));
}

QTEST_APPLESS_MAIN(tst_HostOptions)
#include "tst_HostOptions.moc"
