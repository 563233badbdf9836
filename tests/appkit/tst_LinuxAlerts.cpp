#include "PanelDriver.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/windows/AlertResponder.h>
#include <QWPlatform/linux/desktop/LinuxAlerts.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QWindow>
#include <fakes/FakeSystem.h>

using platform::Alert;
using platform::runAlert;

namespace
{
Alert crashAlert()
{
    return {"The 'Echo' VST failed to validate and will be ignored.",
            "It may work after an update.",
            {"OK", "Show", "Cancel"}};
}

QList<QPushButton *> buttonsFromLeft(QWidget &panel)
{
    QList<QPushButton *> buttons = panel.findChildren<QPushButton *>();
    std::sort(buttons.begin(), buttons.end(), [](QWidget *a, QWidget *b) { return a->x() < b->x(); });
    return buttons;
}

QTextEdit *textOf(QWidget &panel, const QString &text)
{
    const QList<QTextEdit *> edits = panel.findChildren<QTextEdit *>();
    const auto found = std::find_if(edits.begin(), edits.end(), [&](QTextEdit *e) { return e->toPlainText() == text; });
    return found == edits.end() ? nullptr : *found;
}
} // namespace

class tst_LinuxAlerts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { platform::setAlertResponder({}); }
    void keyChoosesAButton_data();
    void keyChoosesAButton();
    void clickChoosesAButton();
    void escapeAndClosingCancelOrDoNothing_data();
    void escapeAndClosingCancelOrDoNothing();
    void alertThatGoesUnansweredDoesNotChooseTheDefault();
    void firstButtonIsRightmostAndDefault();
    void noButtonsStandForOne();
    void textIsPlainAndSelectable();
    void messageIsBold();
    void longNamesStayInAPanelOfOrdinarySize();
    void textsTakeNoMoreRoomThanTheyNeed();
    void alertStandsAboveTheFrontWindow();
    void lastWindowIsTheFrontOneWhenNoneIsActive();
    void alertOutlivesTheWindowBelow();
    void responderAnswersOrLeavesItToTheUser();
};

void tst_LinuxAlerts::keyChoosesAButton_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("choice");
    QTest::newRow("Return is the default") << Qt::Key_Return << 0;
    QTest::newRow("Enter is the default") << Qt::Key_Enter << 0;
    QTest::newRow("Space is the focused one") << Qt::Key_Space << 0;
    QTest::newRow("Escape is Cancel") << Qt::Key_Escape << 2;
}

void tst_LinuxAlerts::keyChoosesAButton()
{
    QFETCH(Qt::Key, key);
    PanelDriver driver(
        [&](QWidget &panel) { QTest::keyClick(panel.focusWidget() ? panel.focusWidget() : &panel, key); });
    QTEST(runAlert(crashAlert()), "choice");
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::clickChoosesAButton()
{
    for (int choice : {0, 1, 2}) {
        PanelDriver driver(
            [&](QWidget &panel) { QTest::mouseClick(buttonsFromLeft(panel).at(2 - choice), Qt::LeftButton); });
        QCOMPARE(runAlert(crashAlert()), choice);
    }
}

void tst_LinuxAlerts::escapeAndClosingCancelOrDoNothing_data()
{
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<int>("choice");
    QTest::newRow("none") << QStringList() << 0;
    QTest::newRow("the only one") << QStringList("Close Anyway") << 0;
    QTest::newRow("Cancel last") << QStringList{"Replace", "Keep Both", "Cancel"} << 2;
    QTest::newRow("Cancel first") << QStringList{"Cancel", "Close Anyway"} << 0;
    QTest::newRow("Cancel between") << QStringList{"Save", "Cancel", "Don’t Save"} << 1;
    QTest::newRow("in the user's language") << QStringList{"Abbrechen", "Trotzdem"} << 0;
    QTest::newRow("neither") << QStringList{"Download", "Later"} << -1;
}

/// -1 stands for nothing.
void tst_LinuxAlerts::escapeAndClosingCancelOrDoNothing()
{
    QFETCH(const QStringList, buttons);
    QFETCH(const int, choice);
    FakeSystem system;
    const platform::SystemScope scope(system);
    system.addHostResource("Localizable.strings", "\"Cancel\" = \"Abbrechen\";");
    const auto byEscape = [](QWidget &panel) { QTest::keyClick(&panel, Qt::Key_Escape); };
    const auto byClosing = [](QWidget &panel) { panel.close(); };
    for (const auto &leave : {std::function<void(QWidget &)>(byEscape), std::function<void(QWidget &)>(byClosing)}) {
        bool stays = false;
        const PanelDriver driver([&](QWidget &panel) {
            QCOMPARE(panel.windowFlags().testFlag(Qt::WindowCloseButtonHint), choice >= 0);
            leave(panel);
            stays = panel.isVisible();
            if (stays)
                buttonsFromLeft(panel).last()->click();
        });
        const int chosen = platform::LinuxAlerts().run({"Sure?", {}, buttons});
        QCOMPARE(stays ? -1 : chosen, choice);
    }
}

void tst_LinuxAlerts::alertThatGoesUnansweredDoesNotChooseTheDefault()
{
    for (const QStringList &buttons : {QStringList{"Replace", "Cancel"}, QStringList{"Download", "Later"}}) {
        const PanelDriver driver([](QWidget &panel) { panel.hide(); }); // as where the program ends
        QCOMPARE(runAlert({"Sure?", {}, buttons}), 1);
    }
}

void tst_LinuxAlerts::firstButtonIsRightmostAndDefault()
{
    PanelDriver driver([](QWidget &panel) {
        const QList<QPushButton *> buttons = buttonsFromLeft(panel);
        QCOMPARE(buttons.last()->text(), QString("OK"));
        QCOMPARE(buttons.first()->text(), QString("Cancel"));
        QVERIFY(buttons.last()->isDefault());
        QTRY_VERIFY(buttons.last()->hasFocus());
        QVERIFY(!(panel.windowFlags() & Qt::WindowMinMaxButtonsHint)); // nothing to do but to answer
        panel.close();
    });
    runAlert(crashAlert());
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::noButtonsStandForOne()
{
    PanelDriver driver([](QWidget &panel) {
        QCOMPARE(buttonsFromLeft(panel).size(), 1);
        QTest::keyClick(&panel, Qt::Key_Escape);
    });
    QCOMPARE(runAlert({"Done.", {}, {}}), 0);
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::textIsPlainAndSelectable()
{
    const QString html = "<b>Acme</b> & \"Söhne\" <img src='x'>";
    PanelDriver driver([&](QWidget &panel) {
        QTextEdit *const text = textOf(panel, html);
        QVERIFY(text);
        text->setFocus();
        text->selectAll();
        QCOMPARE(text->textCursor().selectedText(), html);
        QTest::keyClick(text, Qt::Key_Return); // still the alert's
    });
    QCOMPARE(runAlert({html, html, {"OK", "Cancel"}}), 0);
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::messageIsBold()
{
    PanelDriver driver([&](QWidget &panel) {
        QVERIFY(textOf(panel, crashAlert().messageText)->font().bold());
        QVERIFY(!textOf(panel, crashAlert().informativeText)->font().bold());
        panel.close();
    });
    runAlert(crashAlert());
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::longNamesStayInAPanelOfOrdinarySize()
{
    const QString name(1000, 'W');
    PanelDriver driver([&](QWidget &panel) {
        QVERIFY2(panel.width() < 900 && panel.height() < 600,
                 qPrintable(QString("%1x%2").arg(panel.width()).arg(panel.height())));
        const QList<QPushButton *> buttons = buttonsFromLeft(panel);
        QVERIFY(panel.rect().contains(buttons.first()->geometry()));
        QVERIFY(panel.rect().contains(buttons.last()->geometry()));
        QVERIFY(textOf(panel, name));
        panel.close();
    });
    runAlert({name, QString("line\n").repeated(200), {name, "Cancel"}});
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::textsTakeNoMoreRoomThanTheyNeed()
{
    PanelDriver driver([&](QWidget &panel) {
        QTextEdit *const text = textOf(panel, "One line.");
        QVERIFY2(text->height() < 2 * text->fontMetrics().lineSpacing(), qPrintable(QString::number(text->height())));
        panel.close();
    });
    runAlert({"One line.", "Another.", {"OK"}});
    QVERIFY(driver.hasDriven());
}

void tst_LinuxAlerts::alertStandsAboveTheFrontWindow()
{
    QWidget splash(nullptr, Qt::SplashScreen);
    splash.resize(480, 270);
    splash.show();
    PanelDriver driver([&](QWidget &panel) {
        QCOMPARE(panel.windowHandle()->transientParent(), splash.windowHandle());
        QCOMPARE(panel.windowModality(), Qt::ApplicationModal);
        panel.close();
    });
    runAlert(crashAlert());
    QVERIFY(driver.hasDriven());
}

/// As while a host launches: none of its windows is active yet.
void tst_LinuxAlerts::lastWindowIsTheFrontOneWhenNoneIsActive()
{
    std::vector<std::unique_ptr<QWidget>> windows;
    for (int i = 0; i < 6; ++i) {
        windows.push_back(std::make_unique<QWidget>(nullptr, Qt::Window));
        windows.back()->show();
    }
    for (; !windows.empty(); windows.pop_back()) {
        QApplication::setActiveWindow(nullptr);
        const QWindow *below = nullptr;
        PanelDriver driver([&](QWidget &panel) {
            below = panel.windowHandle()->transientParent();
            panel.close();
        });
        runAlert(crashAlert());
        QCOMPARE(below, windows.back()->windowHandle());
    }
}

void tst_LinuxAlerts::alertOutlivesTheWindowBelow()
{
    auto splash = std::make_unique<QWidget>(nullptr, Qt::SplashScreen);
    splash->show();
    PanelDriver driver([&](QWidget &panel) {
        splash.reset();
        QVERIFY(panel.isVisible());
        QTest::keyClick(&panel, Qt::Key_Escape);
    });
    QCOMPARE(runAlert(crashAlert()), 2);
}

void tst_LinuxAlerts::responderAnswersOrLeavesItToTheUser()
{
    QStringList seen;
    platform::setAlertResponder([&](const Alert &alert, QWidget *panel) -> std::optional<int> {
        seen.append(alert.messageText);
        if (!panel->isVisible() || seen.size() > 1)
            return std::nullopt;
        return 1;
    });
    QCOMPARE(runAlert(crashAlert()), 1);
    PanelDriver driver([](QWidget &panel) { QTest::keyClick(&panel, Qt::Key_Escape); });
    QCOMPARE(runAlert(crashAlert()), 2);
    QCOMPARE(seen, (QStringList{crashAlert().messageText, crashAlert().messageText}));
}

QTEST_MAIN(tst_LinuxAlerts)
#include "tst_LinuxAlerts.moc"
