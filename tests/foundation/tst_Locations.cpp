#include <QWPlatform/foundation/Locations.h>

#include <QTest>

using platform::Locations;

class tst_Locations : public QObject
{
    Q_OBJECT

private slots:
    void documentedPathsAreMapped_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("real");
        QTest::newRow("home") << "~"
                              << "/home/me";
        QTest::newRow("below home") << "~/Library/Preferences"
                                    << "/home/me/Library/Preferences";
        QTest::newRow("another's home") << "~you/x"
                                        << "~you/x";
        QTest::newRow("tilde inside") << "/a/~/b"
                                      << "/a/~/b";
        QTest::newRow("library") << "/Library"
                                 << "/root/Library";
        QTest::newRow("below library") << "/Library/Audio"
                                       << "/root/Library/Audio";
        QTest::newRow("like library") << "/LibraryX"
                                      << "/LibraryX";
        QTest::newRow("library elsewhere") << "/home/me/Library"
                                           << "/home/me/Library";
        QTest::newRow("relative") << "Library/Audio"
                                  << "Library/Audio";
        QTest::newRow("nothing") << ""
                                 << "";
    }

    void documentedPathsAreMapped()
    {
        QFETCH(QString, path);
        QFETCH(QString, real);
        QCOMPARE(Locations("/home/me/", "/root/").mapped(path), real);
    }

    void withoutALibraryRootTheLibraryIsWhereItSays()
    {
        QCOMPARE(Locations("/home/me", "").mapped("/Library/Audio"), "/Library/Audio");
        QCOMPARE(Locations("/home/me", "/").mapped("/Library/Audio"), "/Library/Audio");
    }

    void tildeAloneIsExpandedOnRequest()
    {
        const Locations locations("/home/me", "/root");
        QCOMPARE(locations.expandingTilde("~/x"), "/home/me/x");
        QCOMPARE(locations.expandingTilde("/Library/x"), "/Library/x");
    }

    void supportSiteHasNoTrailingSlash()
    {
        Locations locations("/home/me", "");
        QCOMPARE(locations.supportSite(), QString());
        locations.setSupportSite("http://127.0.0.1:8080//");
        QCOMPARE(locations.supportSite(), "http://127.0.0.1:8080");
    }
};

QTEST_GUILESS_MAIN(tst_Locations)
#include "tst_Locations.moc"
