#include "BrowserOutlets.h"

#include "DeviceOutline.h"
#include "OneLineLabel.h"
#include "ProgressPanel.h"
#include "QWVeskBrowserRecordingsTable.h"

#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>

namespace qw
{

namespace
{
constexpr int outlineWidth = 200; ///< At first.

void registerBrowserClasses()
{
    platform::InterfaceFile::registerClass<DeviceOutline>("DeviceOutline");
    platform::InterfaceFile::registerClass<OneLineLabel>("OneLineLabel");
    platform::InterfaceFile::registerClass<ProgressPanel>("ProgressPanel");
    platform::InterfaceFile::registerClass<QWVeskBrowserRecordingsTable>("QWVeskBrowserRecordingsTable");
}
} // namespace

BrowserOutlets BrowserOutlets::load(const platform::Bundle &bundle, QObject &owner)
{
    registerBrowserClasses();
    platform::InterfaceFile file("QWVeskBrowser", bundle, owner);
    BrowserOutlets outlets;
    file.connectOutlet("window", outlets.window);
    file.connectOutlet("searchField", outlets.searchField);
    file.connectOutlet("deviceTable", outlets.deviceTable);
    file.connectOutlet("recordingTable", outlets.recordingTable);
    file.connectOutlet("formatPopup", outlets.formatPopup);
    file.connectOutlet("openAfterSaveButton", outlets.openAfterSaveButton);
    file.connectOutlet("saveButton", outlets.saveButton);
    file.connectOutlet("progressPanel", outlets.progressPanel);
    file.connectOutlet("progressText", outlets.progressText);
    file.connectOutlet("progressBar", outlets.progressBar);
    if (!file.isComplete())
        return {};
    outlets.nib = file.takeWidget();
    outlets._findExtras();
    outlets._setPictures(bundle);
    outlets.recordingTable->awakeFromNib();
    outlets._arrange();
    return outlets;
}

void BrowserOutlets::_findExtras()
{
    selectionText = nib->findChild<QLabel *>("selectionText");
    reloadButton = nib->findChild<QToolButton *>("reloadButton");
    progressPages = nib->findChild<QStackedWidget *>("progressPages");
    progressDetails = nib->findChild<QLabel *>("progressDetails");
    failureText = nib->findChild<QLabel *>("failureText");
    failuresList = nib->findChild<QListWidget *>("failuresList");
    tryAgainButton = nib->findChild<QPushButton *>("tryAgainButton");
    stopButton = nib->findChild<QPushButton *>("stopButton");
}

void BrowserOutlets::_setPictures(const platform::Bundle &bundle) const
{
    deviceTable->setDeviceImage(platform::tintedIcon(bundle.pathForResource("QWVeskDevice", "png")));
    if (reloadButton)
        reloadButton->setIcon(platform::tintedIcon(bundle.pathForResource("reload", "svg")));
    for (QLabel *const quiet : {selectionText, progressDetails})
        if (quiet)
            quiet->setForegroundRole(QPalette::PlaceholderText);
}

/// The sheet is a window of its own, whatever the file made of it; the table's header and corner follow the table.
void BrowserOutlets::_arrange() const
{
    progressPanel->setParent(window, Qt::Dialog);
    QWidget::setTabOrder(recordingTable, recordingTable->horizontalHeader());
    if (auto *const corner = recordingTable->findChild<QWidget *>("cornerButton"))
        QWidget::setTabOrder(recordingTable->horizontalHeader(), corner);
    if (auto *const splitter = window->findChild<QSplitter *>()) {
        splitter->setSizes({outlineWidth, window->width() - outlineWidth});
        splitter->setStretchFactor(1, 1);
    }
}

} // namespace qw
