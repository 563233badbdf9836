#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <fakes/FakeSystem.h>

using platform::Bundle;
using platform::InterfaceFile;

namespace
{
QByteArray windowWith(const QByteArray &content, const QByteArray &extra = {})
{
    return "<ui version=\"4.0\"><class>window</class><widget class=\"QWidget\" name=\"window\">"
           "<property name=\"windowTitle\"><string>Plug-ins</string></property>" +
           content + "</widget>" + extra + "</ui>";
}

QByteArray control(const QByteArray &type, const QByteArray &name, const QByteArray &action)
{
    return "<widget class=\"" + type + "\" name=\"" + name + "\"><property name=\"action\" stdset=\"0\"><string>" +
           action + "</string></property></widget>";
}
} // namespace

/// Owner of the files below.
class Owner : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void scan(QObject *sender) { senders.append(sender); }

    QObjectList senders;
};

/// A widget that only the test knows.
class Meter : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;
};

class tst_InterfaceFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outletsAreFoundByName();
    void actionsGoToTheOwner();
    void hostsOwnFileReplacesTheLibrarys();
    void missingFileIsNamed();
    void brokenFileIsNamed_data();
    void brokenFileIsNamed();
    void nothingCutShortIsAnInterface();
    void missingOutletIsNamed();
    void outletOfAnotherClassIsNamed();
    void incompleteFileLeavesNoOutlet();
    void outletsOfTakenWidgetsStay();
    void actionWithoutMethodIsNamed();
    void customClassesAreMade();
    void textsAreLocalized();
    void takenWidgetOutlivesTheFile();
    void parentedWidgetStays();
    void libraryPathsStay();

private:
    Bundle _bundleWith(FakeSystem &system, const QByteArray &ui);
    void _expectWarnings(const char *pattern) { QTest::ignoreMessage(QtWarningMsg, QRegularExpression(pattern)); }
};

Bundle tst_InterfaceFile::_bundleWith(FakeSystem &system, const QByteArray &ui)
{
    system.writeFile("/Library/Frameworks/Own.framework/Resources/Owner.ui", ui);
    return Bundle(system.real("/Library/Frameworks/Own.framework"));
}

void tst_InterfaceFile::outletsAreFoundByName()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("<widget class=\"QLabel\" name=\"status\"/>")), owner);
    QLabel *status = nullptr;
    QWidget *window = nullptr;
    file.connectOutlet("status", status);
    file.connectOutlet("window", window);
    QVERIFY(file.isComplete());
    QVERIFY(status);
    QCOMPARE(window, file.widget());
}

void tst_InterfaceFile::actionsGoToTheOwner()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    const QByteArray ui =
        windowWith(control("QPushButton", "button", "scan:") + control("QLineEdit", "field", "scan:"));
    InterfaceFile file("Owner", _bundleWith(system, ui), owner);
    QPushButton *button = nullptr;
    QLineEdit *field = nullptr;
    file.connectOutlet("button", button);
    file.connectOutlet("field", field);
    QVERIFY(file.isComplete());
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(owner.senders, (QObjectList{button, field}));
}

void tst_InterfaceFile::hostsOwnFileReplacesTheLibrarys()
{
    FakeSystem system;
    platform::SystemScope current(system);
    system.addHostResource("Owner.ui", windowWith("<widget class=\"QLabel\" name=\"hosts\"/>"));
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("")), owner);
    QVERIFY(file.widget()->findChild<QLabel *>("hosts"));
}

void tst_InterfaceFile::missingFileIsNamed()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    _expectWarnings("\"Missing\".*no such file");
    InterfaceFile file("Missing", _bundleWith(system, windowWith("")), owner);
    QVERIFY(!file.isComplete());
    QVERIFY(!file.widget());
    QLabel *status = nullptr;
    file.connectOutlet("status", status); // nothing more to say
    QVERIFY(!status);
    QCOMPARE(file.errors().size(), 1);
}

void tst_InterfaceFile::brokenFileIsNamed_data()
{
    QTest::addColumn<QByteArray>("ui");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not XML") << QByteArray("\x00\x01\xff", 3);
    QTest::newRow("cut off") << windowWith("<widget class=\"QLabel\" name=\"status\"/>").left(90);
    QTest::newRow("another document") << QByteArray("<plist/>");
}

void tst_InterfaceFile::brokenFileIsNamed()
{
    QFETCH(QByteArray, ui);
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Designer: .*"));
    _expectWarnings("Interface file \"Owner\": .+");
    InterfaceFile file("Owner", _bundleWith(system, ui), owner);
    QVERIFY(!file.widget());
    QVERIFY(!file.isComplete());
}

void tst_InterfaceFile::nothingCutShortIsAnInterface()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    const QByteArray whole = windowWith(control("QPushButton", "button", "scan:"));
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto restore = qScopeGuard([&] { qInstallMessageHandler(before); });
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const InterfaceFile file("Owner", _bundleWith(system, whole.first(size)), owner);
        QVERIFY2(!file.widget() && !file.isComplete(), whole.first(size).constData());
    }
    QVERIFY(InterfaceFile("Owner", _bundleWith(system, whole), owner).isComplete());
}

void tst_InterfaceFile::missingOutletIsNamed()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("")), owner);
    QLabel *status = reinterpret_cast<QLabel *>(this);
    _expectWarnings("no outlet \"status\"");
    file.connectOutlet("status", status);
    QVERIFY(!status);
    QCOMPARE(file.errors(), QStringList{"Interface file \"Owner\": there is no outlet \"status\""});
}

void tst_InterfaceFile::outletOfAnotherClassIsNamed()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("<widget class=\"QLabel\" name=\"status\"/>")), owner);
    QPushButton *status = nullptr;
    _expectWarnings("\"status\" is a QLabel, not a QPushButton");
    file.connectOutlet("status", status);
    QVERIFY(!status);
    QVERIFY(!file.isComplete());
}

/// Their widgets go with the file.
void tst_InterfaceFile::incompleteFileLeavesNoOutlet()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    QLabel *status = nullptr;
    QPushButton *button = nullptr;
    {
        InterfaceFile file("Owner", _bundleWith(system, windowWith("<widget class=\"QLabel\" name=\"status\"/>")),
                           owner);
        file.connectOutlet("status", status);
        _expectWarnings("no outlet \"button\"");
        file.connectOutlet("button", button);
        QVERIFY(!file.isComplete());
    }
    QVERIFY(!status && !button);
}

void tst_InterfaceFile::outletsOfTakenWidgetsStay()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("<widget class=\"QLabel\" name=\"status\"/>")), owner);
    QLabel *status = nullptr;
    QLabel *missing = nullptr;
    file.connectOutlet("status", status);
    _expectWarnings("no outlet \"missing\"");
    file.connectOutlet("missing", missing);
    const std::unique_ptr<QWidget> kept = file.takeWidget();
    QVERIFY(!file.isComplete());
    QCOMPARE(status, kept->findChild<QLabel *>("status"));
}

void tst_InterfaceFile::actionWithoutMethodIsNamed()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    _expectWarnings("Owner, has no method for the action \"deleteLater\" of \"button\"");
    InterfaceFile file("Owner", _bundleWith(system, windowWith(control("QPushButton", "button", "deleteLater"))),
                       owner);
    QVERIFY(!file.isComplete());
    QVERIFY(file.widget());
}

void tst_InterfaceFile::customClassesAreMade()
{
    FakeSystem system;
    platform::SystemScope current(system);
    InterfaceFile::registerClass<Meter>("Meter");
    Owner owner;
    const QByteArray ui = windowWith("<widget class=\"Meter\" name=\"meter\"/>",
                                     "<customwidgets><customwidget><class>Meter</class><extends>QLabel</extends>"
                                     "<header>Meter.h</header></customwidget></customwidgets>");
    InterfaceFile file("Owner", _bundleWith(system, ui), owner);
    Meter *meter = nullptr;
    file.connectOutlet("meter", meter);
    QVERIFY(meter);
}

void tst_InterfaceFile::textsAreLocalized()
{
    FakeSystem system;
    platform::SystemScope current(system);
    system.addHostResource("en.lproj/Localizable.strings", "\"Plug-ins\" = \"Effects and Instruments\";");
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("")), owner);
    QCOMPARE(file.widget()->windowTitle(), platform::System::current().mainBundle().localizedString("Plug-ins"));
}

void tst_InterfaceFile::takenWidgetOutlivesTheFile()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    std::unique_ptr<QWidget> window;
    {
        InterfaceFile file("Owner", _bundleWith(system, windowWith(control("QPushButton", "button", "scan:"))), owner);
        window = file.takeWidget();
    }
    auto *const button = window->findChild<QPushButton *>("button");
    button->click();
    QCOMPARE(owner.senders, QObjectList{button});
}

void tst_InterfaceFile::parentedWidgetStays()
{
    FakeSystem system;
    platform::SystemScope current(system);
    Owner owner;
    QWidget parent;
    {
        InterfaceFile file("Owner", _bundleWith(system, windowWith("")), owner, &parent);
        QCOMPARE(file.widget()->parentWidget(), &parent);
    }
    QVERIFY(parent.findChild<QWidget *>("window"));
}

void tst_InterfaceFile::libraryPathsStay()
{
    FakeSystem system;
    platform::SystemScope current(system);
    const QStringList before = QCoreApplication::libraryPaths();
    Owner owner;
    InterfaceFile file("Owner", _bundleWith(system, windowWith("")), owner);
    QCOMPARE(QCoreApplication::libraryPaths(), before);
    QVERIFY(!before.isEmpty());
}

QTEST_MAIN(tst_InterfaceFile)
#include "tst_InterfaceFile.moc"
