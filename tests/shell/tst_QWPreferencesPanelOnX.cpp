#include "PreferencesFixture.h"
#include "shortcuts/XServer.h"

#include <QWBase/QWApplication.h>

/// The panel as a window of an X server.
class tst_QWPreferencesPanelOnX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void topEdgeStaysWhileThePanelGrows();
    void clicksSwitchThePane();
    void typedTextIsKeptWhenThePanelCloses();
};

void tst_QWPreferencesPanelOnX::topEdgeStaysWhileThePanelGrows()
{
    const PreferencesFixture host;
    QApplication::setStyle(new MotionStyle(150));
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowExposed(&host.panel()));
    const QRect before = host.panel().geometry();
    host.choose("files");
    QTRY_COMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(0, 120)));
    QTRY_COMPARE(host.content().size(), QSize(400, 320));
}

void tst_QWPreferencesPanelOnX::clicksSwitchThePane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowExposed(&host.panel()));
    const QWidget &button = *host.toolbar().widgetForAction(host.toolbar().itemWithIdentifier("wide"));
    const QPoint place = button.mapToGlobal(button.rect().center());
    QVERIFY(XServer::act({"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "1"}));
    QTRY_COMPARE(host.current(), "wide");
    QTRY_COMPARE(host.content().size(), QSize(520, 120));
}

void tst_QWPreferencesPanelOnX::typedTextIsKeptWhenThePanelCloses()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowExposed(&host.panel()));
    QApplication::setActiveWindow(&host.panel());
    auto *const field = host.panel().findChild<QLineEdit *>("nameField");
    auto *const pane = host.controller().currentPane();
    connect(field, &QLineEdit::editingFinished, pane, [=] { pane->itemChanged(field); });
    field->setFocus();
    QTest::keyClicks(field, "Ada");
    host.panel().close();
    QCOMPARE(host.system.userDefaults().string("Name"), "Ada");
}

int main(int argc, char **argv)
{
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
    QWApplication application(argc, argv);
    tst_QWPreferencesPanelOnX test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWPreferencesPanelOnX.moc"
