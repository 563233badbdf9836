#include "HostPreferences.h"

#include "AppearancePane.h"
#include "ControllersPane.h"
#include "GridMonitor.h"
#include "RemoteMonitor.h"
#include "SettingsPane.h"

#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <QLabel>

namespace demo
{

namespace
{
constexpr const char *paneNames[] = {"general", "files", "controllers", "appearance"};

/// Captions under the groups are small and quiet.
void quietCaptions(QWidget &pane)
{
    const QList<QLabel *> labels = pane.findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (!label->property("isCaption").toBool())
            continue;
        QFont small = label->font();
        small.setPointSizeF(small.pointSizeF() - 2);
        label->setFont(small);
        label->setForegroundRole(QPalette::PlaceholderText);
    }
}
} // namespace

HostPreferences::HostPreferences()
{
    using platform::InterfaceFile;
    InterfaceFile::registerClass<SettingsPane>("SettingsPane");
    InterfaceFile::registerClass<AppearancePane>("AppearancePane");
    InterfaceFile::registerClass<ControllersPane>("ControllersPane");
    InterfaceFile::registerClass<GridMonitor>("GridMonitor");
    InterfaceFile::registerClass<RemoteMonitor>("RemoteMonitor");
}

QString HostPreferences::panelNibName() const
{
    return QStringLiteral("TinePreferences");
}

void HostPreferences::nibDidLoad(platform::InterfaceFile &nib)
{
    m_panes.clear();
    for (const char *name : paneNames) {
        QWPreferencesPane *pane = nullptr;
        nib.connectOutlet(name, pane);
        if (!pane)
            continue;
        quietCaptions(*pane);
        m_panes.append(pane);
    }
}

void HostPreferences::itemChanged(QObject *control)
{
    for (QObject *object = control; object; object = object->parent()) {
        if (auto *pane = qobject_cast<QWPreferencesPane *>(object))
            return pane->itemChanged(control);
    }
}

void HostPreferences::openScrollWheelActions(QObject *)
{
    QWScrollWheelManager::openPanel();
}

void HostPreferences::openKeyboardShortcuts(QObject *)
{
    QWKeyboardShortcuts::openPanel();
}

} // namespace demo
