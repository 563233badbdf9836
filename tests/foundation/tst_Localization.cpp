#include "fakes/FakeSystem.h"

#include <QWPlatform/foundation/Localization.h>

#include <QTest>

using namespace platform;

class tst_Localization : public QObject
{
    Q_OBJECT

private slots:
    void textsComeFromTheHostsTable()
    {
        FakeSystem system;
        SystemScope current(system);
        system.addHostResource("Localizable.strings", "\"Validating '%@'\" = \"'%@' wird geprüft\";");
        QCOMPARE(localized("Validating '%@'"), "'%@' wird geprüft");
        QCOMPARE(localized("Quit"), "Quit");
    }

    void withoutATableTheKeyIsTheText()
    {
        FakeSystem system;
        SystemScope current(system);
        QCOMPARE(localized("Locating Audio Units"), "Locating Audio Units");
    }

    void placeholdersAreFilledInOrder_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("text");
        const auto row = [](const QString &format, const QStringList &arguments, const QString &text) {
            QTest::newRow(qPrintable(format)) << format << arguments << text;
        };
        row("The '%@' VST", {"Echo"}, "The 'Echo' VST");
        row("%@/tutorials/%@/%d/index.xml", {"http://x", "TH", "2"}, "http://x/tutorials/TH/2/index.xml");
        row("%2$@ before %1$@", {"a", "b"}, "b before a");
        row("%1$@%1$d%@", {"a", "b"}, "aaa");
        row("key %C", {"⌘"}, "key ⌘");
        row("%d%% of %@", {"50", "100%"}, "50% of 100%");
        row("%@ %@", {"%@"}, "%@ %@");
        row("%@", {"%2$@ %%"}, "%2$@ %%");
        row("%3$@ %0$@", {"a"}, "%3$@ %0$@");
        row("100 % %x %", {"a"}, "100 % %x %");
        row("%1 %1$ %1$x", {"a"}, "%1 %1$ %1$x");
        row("%99999999999$@", {"a"}, "%99999999999$@");
        row("", {"a"}, "");
    }

    void placeholdersAreFilledInOrder()
    {
        QFETCH(QString, format);
        QFETCH(QStringList, arguments);
        QFETCH(QString, text);
        QCOMPARE(formatted(format, arguments), text);
    }
};

QTEST_GUILESS_MAIN(tst_Localization)
#include "tst_Localization.moc"
