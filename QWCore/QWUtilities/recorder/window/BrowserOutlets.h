#pragma once

#include <QWidget>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QWVeskBrowserRecordingsTable;

namespace platform
{
class Bundle;
class Panel;
} // namespace platform

namespace qw
{

class DeviceOutline;
class ProgressPanel;

/// Of the interface file "QWVeskBrowser".
struct BrowserOutlets
{
    platform::Panel *window = nullptr;
    QLineEdit *searchField = nullptr;
    DeviceOutline *deviceTable = nullptr;
    QWVeskBrowserRecordingsTable *recordingTable = nullptr;
    QComboBox *formatPopup = nullptr;
    QCheckBox *openAfterSaveButton = nullptr;
    QPushButton *saveButton = nullptr;
    ProgressPanel *progressPanel = nullptr;
    QLabel *progressText = nullptr;
    QProgressBar *progressBar = nullptr;

    /// @{
    /// A host's own file may do without these, which are null then.
    QLabel *selectionText = nullptr;
    QToolButton *reloadButton = nullptr;
    QStackedWidget *progressPages = nullptr;
    QLabel *progressDetails = nullptr;
    QLabel *failureText = nullptr;
    QListWidget *failuresList = nullptr;
    QPushButton *tryAgainButton = nullptr;
    QPushButton *stopButton = nullptr;
    /// @}

    std::unique_ptr<QWidget> nib; ///< Owns all of them; null when the file cannot be used, and they are null, too.

    /// Loads the file; @p owner takes its actions.
    static BrowserOutlets load(const platform::Bundle &bundle, QObject &owner);

private:
    void _findExtras();
    void _setPictures(const platform::Bundle &bundle) const;
    void _arrange() const;
};

} // namespace qw
