#include "QWVeskBrowser.h"

#include "QWUtilities/recorder/browse/DisplayedRecordings.h"
#include "QWUtilities/recorder/browse/DownloadQueue.h"
#include "QWUtilities/recorder/browse/FormatMenu.h"
#include "QWUtilities/recorder/browse/RecorderList.h"
#include "QWUtilities/recorder/window/BrowserOutlets.h"
#include "QWUtilities/recorder/window/BrowserTexts.h"
#include "QWUtilities/recorder/window/DeviceOutline.h"
#include "QWUtilities/recorder/window/EmptyNote.h"
#include "QWUtilities/recorder/window/ProgressPanel.h"
#include "QWUtilities/recorder/window/ProgressSheet.h"
#include "QWUtilities/recorder/window/QWVeskBrowserRecordingsTable.h"
#include "QWUtilities/recorder/window/RecordingSearch.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/windows/WindowHiding.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>

using platform::System;

namespace
{
constexpr auto columnsKey = "QWVeskBrowserRecordingTableColumns";
constexpr auto sortKey = "QWVeskBrowserSortDescriptor";

std::vector<int> asVector(const QList<int> &rows)
{
    return {rows.begin(), rows.end()};
}

bool isPlainReturn(const QKeyEvent &press)
{
    const bool isReturn = press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter;
    return isReturn && !press.isAutoRepeat() && !(press.modifiers() & ~Qt::KeypadModifier);
}

/// Items that show the user's language and carry the English titles.
void fillFormats(QComboBox &popup, const qw::FormatMenu &menu)
{
    popup.clear();
    for (const QString &title : menu.titles) {
        if (title.isEmpty())
            popup.insertSeparator(popup.count());
        else
            popup.addItem(platform::localized(title), title);
    }
    popup.setCurrentIndex(menu.selected);
}
} // namespace

/// Fields in their documented order, as far as the parts that hold them allow.
class Q_DECL_HIDDEN QWVeskBrowser::Private : public qw::RecorderBrowser,
                                             public qw::RecorderListView,
                                             public qw::DownloadQueueView
{
public:
    explicit Private(QWVeskBrowser &owner);
    ~Private() override;

    void _openWindow();
    void searchChanged();

    // RecorderBrowser
    void refreshDevices() override { m_devices.refreshDevices(); }
    void deviceDidNotResolve(QWVeskDevice &device) override { m_devices.deviceDidNotResolve(device); }
    bool recordingUpdateProgress(QWVeskRecording &recording, float fraction) override
    {
        return m_downloadQueue.recordingUpdateProgress(recording, fraction);
    }
    void recordingDidFinishDownloading(QWVeskRecording &recording) override
    {
        m_downloadQueue.recordingDidFinishDownloading(recording);
    }
    void recordingDidStopDownloading(QWVeskRecording &recording) override
    {
        m_downloadQueue.recordingDidStopDownloading(recording);
    }
    void recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason) override
    {
        m_downloadQueue.recordingDidFailDownloading(recording, reason);
    }

    // RecorderListView
    void reloadDevices() override;
    void selectedDeviceDidChange() override;
    void deviceWasMadeAfresh(const QWVeskDevice &former, const std::shared_ptr<QWVeskDevice> &device) override
    {
        m_outlets.deviceTable->hierarchy().replaceDevice(former, device);
    }
    void searchStateDidChange() override { _updateEmptyNote(); }

    // DownloadQueueView
    QWidget *window() const override { return m_outlets.window; }
    std::vector<std::shared_ptr<QWVeskRecording>> selectedRecordings() const override;
    QString selectedFormatTitle() const override { return m_outlets.formatPopup->currentData().toString(); }
    bool opensAfterSave() const override { return m_outlets.openAfterSaveButton->isChecked(); }
    void beginProgressSheet() override { m_progress->begin(); }
    void endProgressSheet() override { m_progress->end(); }
    void setWindowCanHide(bool canHide) override { platform::setWindowCanHide(*m_outlets.window, canHide); }
    void setProgressText(const QString &text) override { m_progress->setText(text); }
    void setProgress(double fraction) override { m_progress->setProgress(fraction); }
    void setProgressDetails(const qw::DownloadProgress &progress) override { m_progress->setDetails(progress); }
    void showFailure(const QString &line) override { m_progress->showFailure(line); }
    void showFailures(const std::vector<qw::FailedDownload> &failures) override { m_progress->showFailures(failures); }

    QWVeskBrowser &m_owner;
    qw::RecorderList m_devices;                    ///< With the service browser and the index of the selected one.
    qw::DisplayedRecordings m_displayedRecordings; ///< With search and sort.
    qw::BrowserOutlets m_outlets;
    std::unique_ptr<qw::RecordingSearch> m_search;
    std::unique_ptr<qw::EmptyNote> m_emptyNote;
    std::unique_ptr<qw::ProgressSheet> m_progress;
    QString m_title; ///< Of the window, without a recorder.
    QIcon m_recorderPicture;
    QIcon m_searchPicture;
    qw::DownloadQueue m_downloadQueue; ///< With folder, format and the wish to stop.

private:
    bool _loadNib();
    void awakeFromNib();
    void _connectOutlets();
    void _connectKeys();
    QIcon _picture(const char *name) const;
    void windowWillClose();
    void outlineViewSelectionDidChange(const std::shared_ptr<QWVeskDevice> &device);
    void tableViewDidClickTableColumn(const QString &identifier);
    template <class Change>
    void _changeKeepingSelection(const Change &change);
    void _recordingsDidRefresh();
    void updateSaveControls();
    void _updateEmptyNote();
    void _enterTable();

    bool m_isRefreshingRecordings = false; ///< The controls follow at the end, once.
};

QWVeskBrowser &QWVeskBrowser::sharedInstance()
{
    return System::current().shared<QWVeskBrowser>([] { return new QWVeskBrowser; });
}

void QWVeskBrowser::openWindow()
{
    sharedInstance().d->_openWindow();
}

QWVeskBrowser::QWVeskBrowser()
    : d(std::make_unique<Private>(*this))
{
}

QWVeskBrowser::~QWVeskBrowser() = default;

QWidget *QWVeskBrowser::window() const
{
    return d->window();
}

void QWVeskBrowser::save(QObject *)
{
    if (d->window() && !d->selectedRecordings().empty())
        d->m_downloadQueue.save();
}

void QWVeskBrowser::stop(QObject *)
{
    d->m_downloadQueue.stop();
}

void QWVeskBrowser::searchChanged(QObject *)
{
    if (d->window())
        d->searchChanged();
}

void QWVeskBrowser::reload(QObject *)
{
    if (d->window())
        d->m_devices.reload();
}

void QWVeskBrowser::tryAgain(QObject *)
{
    d->m_downloadQueue.tryAgain();
}

void QWVeskBrowser::closeProgress(QObject *)
{
    d->m_downloadQueue.close();
}

/// Return is what nobody in the window has a use for. An end of the application comes here before Qt closes windows,
/// the topmost sheet first: one that waits for its download would call the end off.
bool QWVeskBrowser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance())
        d->m_downloadQueue.abandon();
    const bool isPress = watched == d->window() && event->type() == QEvent::KeyPress;
    if (!isPress || !isPlainReturn(*static_cast<QKeyEvent *>(event)))
        return QObject::eventFilter(watched, event);
    save();
    return true;
}

QWVeskBrowser::Private::Private(QWVeskBrowser &owner)
    : m_owner(owner)
    , m_devices(*this, *this)
    , m_downloadQueue(*this)
{
    const QVariant stored = System::current().userDefaults().object(sortKey);
    if (stored.typeId() == QMetaType::QByteArray)
        m_displayedRecordings.setSortDescriptor(qw::SortDescriptor::unarchived(stored.toByteArray()));
}

/// While what is told of it is still there.
QWVeskBrowser::Private::~Private()
{
    if (m_outlets.window)
        m_outlets.window->close();
}

void QWVeskBrowser::Private::_openWindow()
{
    if (!QWApplication::sharedApplication())
        return;
    m_devices.search(); // first: recorders answer while the window is made, and are heard of from the event loop
    if (!m_outlets.window && !_loadNib())
        return m_devices.stop();
    platform::makeKeyAndOrderFront(*m_outlets.window);
}

bool QWVeskBrowser::Private::_loadNib()
{
    m_outlets = qw::BrowserOutlets::load(platform::Bundle::forClassOf(m_owner), m_owner);
    if (!m_outlets.nib)
        return false;
    awakeFromNib();
    return true;
}

void QWVeskBrowser::Private::awakeFromNib()
{
    QWVeskBrowserRecordingsTable &table = *m_outlets.recordingTable;
    m_title = m_outlets.window->windowTitle();
    m_progress = std::make_unique<qw::ProgressSheet>(m_outlets);
    m_emptyNote = std::make_unique<qw::EmptyNote>(table);
    m_recorderPicture = _picture("QWVeskDevice");
    m_searchPicture = _picture("search");
    m_search = std::make_unique<qw::RecordingSearch>(*m_outlets.searchField, m_searchPicture);
    table.setModel(&m_displayedRecordings);
    _connectOutlets();
    _connectKeys();
    refreshDevices();
    table.setColumnState(System::current().userDefaults().object(columnsKey));
    platform::centerWindow(*m_outlets.window, m_outlets.window->size());
    table.setFocus();
}

void QWVeskBrowser::Private::_connectOutlets()
{
    QWVeskBrowser *const owner = &m_owner;
    connect(m_outlets.window, &platform::Panel::willClose, owner, [this] { windowWillClose(); });
    connect(m_outlets.deviceTable, &qw::DeviceOutline::selectionDidChange, owner,
            [this](const auto &device) { outlineViewSelectionDidChange(device); });
    connect(m_outlets.recordingTable, &QWTableView::didClickTableColumn, owner,
            [this](const QString &identifier) { tableViewDidClickTableColumn(identifier); });
    connect(m_outlets.recordingTable, &QWTableView::selectionDidChange, owner, [this] {
        if (!m_isRefreshingRecordings)
            updateSaveControls();
    });
    connect(m_outlets.progressPanel, &qw::ProgressPanel::closeRequested, owner, [this] { m_downloadQueue.close(); });
    connect(m_search.get(), &qw::RecordingSearch::changed, owner, [this] { searchChanged(); });
    connect(m_search.get(), &qw::RecordingSearch::left, owner, [this] { _enterTable(); });
}

void QWVeskBrowser::Private::_connectKeys()
{
    m_outlets.window->installEventFilter(&m_owner);
    QCoreApplication::instance()->installEventFilter(&m_owner);
    const auto *const reload = new QShortcut(Qt::CTRL | Qt::Key_R, m_outlets.window);
    connect(reload, &QShortcut::activated, &m_owner, [this] { m_devices.reload(); });
}

QIcon QWVeskBrowser::Private::_picture(const char *name) const
{
    return platform::tintedIcon(platform::Bundle::forClassOf(m_owner).pathForResource(name, "svg"));
}

void QWVeskBrowser::Private::windowWillClose()
{
    m_devices.stop();
    m_downloadQueue.abandon();
    platform::UserDefaults &defaults = System::current().userDefaults();
    defaults.setObject(columnsKey, m_outlets.recordingTable->columnState());
    if (const auto &descriptor = m_displayedRecordings.sortDescriptor())
        defaults.setObject(sortKey, descriptor->archived());
    defaults.synchronize();
}

void QWVeskBrowser::Private::reloadDevices()
{
    m_outlets.deviceTable->setDevices(m_devices.devices());
}

void QWVeskBrowser::Private::selectedDeviceDidChange()
{
    const auto device = m_devices.selectedDevice();
    m_outlets.deviceTable->select(device.get());
    m_outlets.window->setWindowTitle(qw::windowTitle(m_title, device.get()));
    {
        const QScopedValueRollback refreshing(m_isRefreshingRecordings, true);
        m_outlets.recordingTable->selectRows({});
        m_displayedRecordings.refreshRecordings(device);
        _recordingsDidRefresh();
    }
    updateSaveControls();
}

void QWVeskBrowser::Private::outlineViewSelectionDidChange(const std::shared_ptr<QWVeskDevice> &device)
{
    if (m_devices.isRefreshingDevices() || device == m_devices.selectedDevice())
        return;
    m_search->clear();
    m_displayedRecordings.setSearchText({});
    m_devices.setSelectedDevice(device);
}

void QWVeskBrowser::Private::tableViewDidClickTableColumn(const QString &identifier)
{
    _changeKeepingSelection(
        [&] { m_displayedRecordings.setSortDescriptor(m_displayedRecordings.sortAfterClick(identifier)); });
}

void QWVeskBrowser::Private::searchChanged()
{
    _changeKeepingSelection([this] { m_displayedRecordings.setSearchText(m_search->text()); });
}

/// @p change ends with a refresh.
template <class Change>
void QWVeskBrowser::Private::_changeKeepingSelection(const Change &change)
{
    QWVeskBrowserRecordingsTable &table = *m_outlets.recordingTable;
    const auto noted = m_displayedRecordings.notedRows(asVector(table.selectedRows()));
    change();
    _recordingsDidRefresh();
    const std::vector<int> rows = m_displayedRecordings.rowsOf(noted);
    {
        const QScopedValueRollback refreshing(m_isRefreshingRecordings, true);
        table.selectRows({rows.begin(), rows.end()});
    }
    updateSaveControls();
}

void QWVeskBrowser::Private::_recordingsDidRefresh()
{
    const auto &descriptor = m_displayedRecordings.sortDescriptor();
    const bool rises = !descriptor || descriptor->ascending;
    m_outlets.recordingTable->setSortIndicator(descriptor ? descriptor->key : QString(),
                                               rises ? Qt::AscendingOrder : Qt::DescendingOrder);
    _updateEmptyNote();
}

std::vector<std::shared_ptr<QWVeskRecording>> QWVeskBrowser::Private::selectedRecordings() const
{
    return m_displayedRecordings.recordings(asVector(m_outlets.recordingTable->selectedRows()));
}

void QWVeskBrowser::Private::updateSaveControls()
{
    const auto recordings = selectedRecordings();
    const auto device = m_devices.selectedDevice();
    m_outlets.saveButton->setEnabled(!recordings.empty());
    fillFormats(*m_outlets.formatPopup,
                qw::FormatMenu::forSelection(recordings, device && device->isBlue(), selectedFormatTitle()));
    if (m_outlets.selectionText)
        m_outlets.selectionText->setText(qw::selectionText(recordings, m_displayedRecordings.rowCount()));
}

void QWVeskBrowser::Private::_updateEmptyNote()
{
    if (!m_emptyNote)
        return;
    const auto device = m_devices.selectedDevice();
    const QString &searched = m_displayedRecordings.searchText();
    const auto kind =
        qw::EmptyState::kindOf(m_devices.state(), device.get(), searched, m_displayedRecordings.rowCount());
    m_emptyNote->show(kind == qw::EmptyState::NothingFound ? m_searchPicture : m_recorderPicture,
                      qw::EmptyState::textOf(kind, device.get(), searched));
}

/// From the search field; the first row where none is selected.
void QWVeskBrowser::Private::_enterTable()
{
    QWVeskBrowserRecordingsTable &table = *m_outlets.recordingTable;
    table.setFocus(Qt::OtherFocusReason);
    if (table.selectedRows().isEmpty())
        table.selectRows({0});
}
