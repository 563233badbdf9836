#pragma once

#include "MotionStyle.h"

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/shell/QWPreferencesPane.h>
#include <QWUtilities/shell/QWPreferencesPanel.h>

#include <QApplication>
#include <QLineEdit>
#include <QPixmap>
#include <QScreen>
#include <QTest>

/// What happened to the panes, in order.
inline QStringList &preferencesLog()
{
    static QStringList log;
    return log;
}

/// A pane that notes what is asked of it. Its object name is its identifier.
class NotingPane : public QWPreferencesPane
{
    Q_OBJECT

public:
    using QWPreferencesPane::QWPreferencesPane;

    QString identifier() const override { return objectName(); }
    QString title() const override { return "Title of " + objectName(); }
    QString tooltip() const override { return "not this one"; }
    QIcon image() const override { return QPixmap(8, 8); }
    void paneWillBecomeFront() override { note("will become"); }
    void paneDidBecomeFront() override { note("did become"); }
    void paneWillResignFront() override { note("will resign"); }
    void paneDidResignFront() override { note("did resign"); }
    void updateControls() override { note("update"); }
    void itemChanged(QObject *sender) override
    {
        auto *const field = qobject_cast<QLineEdit *>(sender);
        defaults().setObject("Name", field->text());
        note("changed");
    }

private:
    void note(const QString &what)
    {
        const QString shown = parentWidget() && parentWidget()->objectName() == "contentView" ? "+" : "-";
        preferencesLog().append(objectName() + " " + what + " " + shown);
    }
};

/// A host with the panes of its interface file.
class TestPreferences : public QWPreferencesPanel
{
    Q_OBJECT

public:
    static inline bool hasPanes = true;

    QString panelNibName() const override { return "TestPreferences"; }
    QList<QWPreferencesPane *> panes() const override { return m_panes; }

protected:
    void nibDidLoad(platform::InterfaceFile &nib) override
    {
        m_panes.clear();
        for (const char *name : {"general", "files", "wide"}) {
            QWPreferencesPane *pane = nullptr;
            if (hasPanes)
                nib.connectOutlet(name, pane);
            if (pane)
                m_panes.append(pane);
        }
    }

private:
    QList<QWPreferencesPane *> m_panes;
};

/// A fake machine with that host, on a desktop that wants no motion.
struct PreferencesFixture
{
    FakeSystem system;
    platform::SystemScope scope{system};

    explicit PreferencesFixture(bool hasPanes = true)
    {
        QApplication::setStyle(new MotionStyle(0));
        TestPreferences::hasPanes = hasPanes;
        preferencesLog().clear();
        platform::InterfaceFile::registerClass<NotingPane>("NotingPane");
        system.addHostResource("TestPreferences.ui", file());
        QWPreferencesPanel::install<TestPreferences>();
    }

    static QByteArray pane(const QByteArray &name, int width, int height, const QByteArray &content = {})
    {
        return "<widget class=\"NotingPane\" name=\"" + name +
               "\"><property name=\"geometry\"><rect><x>0</x><y>0</y><width>" + QByteArray::number(width) +
               "</width><height>" + QByteArray::number(height) + "</height></rect></property>" + content + "</widget>";
    }

    static QByteArray file()
    {
        const QByteArray field = "<widget class=\"QLineEdit\" name=\"nameField\"/>";
        return "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"nib\">"
               "<widget class=\"platform::Panel\" name=\"panel\"><property name=\"windowTitle\">"
               "<string>Preferences</string></property></widget>" +
               pane("general", 400, 200, field) + pane("files", 400, 320) + pane("wide", 520, 120) + "</widget></ui>";
    }

    static QWPreferencesPanel &controller() { return QWPreferencesPanel::sharedInstance(); }
    static platform::Panel &panel() { return *controller().panel(); }
    static platform::Toolbar &toolbar() { return *panel().findChild<platform::Toolbar *>(); }
    static QWidget &content() { return *panel().findChild<QWidget *>("contentView"); }
    static QString current() { return controller().currentPane() ? controller().currentPane()->identifier() : ""; }

    static bool isCentred()
    {
        const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
        return (panel().geometry().center() - middle).manhattanLength() <= 8;
    }

    /// Switches as a click in the toolbar would.
    static void choose(const QString &identifier) { toolbar().itemWithIdentifier(identifier)->trigger(); }

    /// What was noted since the last call.
    static QStringList noted() { return std::exchange(preferencesLog(), {}); }
};
