#include "SoundActions.h"

#include "../views/TransportLine.h"
#include "../views/Viewport.h"
#include "HostSettings.h"
#include "MainWindow.h"
#include "SaveRequest.h"
#include "SoundTasks.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Workspace.h>
#include <QWPlatform/foundation/Localization.h>

#include <QFileInfo>
#include <QUrl>

#include <cstdlib>
#include <utility>

namespace demo
{

using platform::formatted;
using platform::localized;
using platform::MenuItem;

namespace
{
/// For the chain: who did it, and to what ("": all of it).
QString stationText(const QString &vendor, const QString &extent)
{
    QStringList parts{vendor, extent};
    parts.removeAll(QString());
    return parts.isEmpty() ? localized("Whole sound") : parts.join(" · ");
}
} // namespace

const QStringList &SoundActions::readableTypes()
{
    static const QStringList types{"wav",  "aif", "aiff", "aifc", "flac", "ogg", "oga",
                                   "opus", "mp3", "caf",  "au",   "snd",  "w64", "rf64"};
    return types;
}

SoundActions::SoundActions(AudioDocument &document, MainWindow &window)
    : m_document(document)
    , m_window(window)
{
    connect(&m_work, &SoundWork::fractionChanged, &window.transport(), &TransportLine::setWorkFraction);
    connect(&m_work, &SoundWork::ended, this, &SoundActions::_openNextFile, Qt::QueuedConnection); // after its result
    connect(&window, &MainWindow::openRequested, this, [this] { openDocument(nullptr); });
    connect(&window, &MainWindow::testToneRequested, this, [this] { openTestTone(nullptr); });
    connect(&window, &MainWindow::saveRequested, this, [this] { saveDocumentAs(nullptr); });
    connect(&window, &MainWindow::cancelRequested, &m_work, &SoundWork::cancel);
    connect(&window, &MainWindow::filesDropped, this, [this](const QStringList &paths) { openFile(paths.first()); });
    window.mayClose = [this] { return _mayClose(); };
}

void SoundActions::_start(const QString &status, SoundWork::Work work, SoundWork::Done done)
{
    if (m_work.isRunning())
        return;
    m_window.transport().showWork(status);
    m_work.start(std::move(work), [this, done = std::move(done)](const WorkResult &result) {
        m_window.transport().endWork(result.cancelled ? localized("Cancelled") : QString());
        if (!result.cancelled)
            done(result);
    });
}

void SoundActions::_fail(const QString &message, const WorkResult &result)
{
    platform::runAlert({message, localized(result.error), {}});
}

void SoundActions::_takeSource(const QString &title, const QString &origin, const WorkResult &result)
{
    m_document.setSource(title, origin, result.clip);
}

void SoundActions::openFile(const QString &path)
{
    if (m_work.isRunning()) {
        m_nextFile = path;
        return;
    }
    const QString name = QFileInfo(path).fileName();
    _start(
        formatted(localized("Opening %@…"), {name}),
        [path](WorkProgress &progress) { return SoundTasks::readFile(path, progress); },
        [this, path, name](const WorkResult &result) {
            if (!result.clip)
                return _fail(formatted(localized("“%@” could not be opened."), {name}), result);
            HostSettings::setLastSound(path);
            _takeSource(name, localized("Sound file"), result);
        });
}

void SoundActions::_openNextFile()
{
    if (const QString path = std::exchange(m_nextFile, {}); !path.isEmpty())
        openFile(path);
}

void SoundActions::openDocument(QObject *)
{
    platform::OpenPanelRequest request;
    request.window = &m_window;
    request.title = localized("Open Sound File");
    request.fileTypes = readableTypes();
    request.fileTypesTitle = localized("Sound files");
    platform::System::current().filePanels().beginOpenPanel(request, [this](int code, const QStringList &paths) {
        if (code == platform::FilePanels::OK && !paths.isEmpty())
            openFile(paths.first());
    });
}

void SoundActions::_makeTestTone(const std::function<void()> &whenMade)
{
    _start(
        localized("Making the test tone…"), [](WorkProgress &) { return SoundTasks::makeTone(); },
        [this, whenMade](const WorkResult &result) {
            if (!result.clip)
                return _fail(localized("The test tone could not be made."), result);
            _takeSource(localized("Test Tone"), localized("Built-in"), result);
            whenMade();
        });
}

void SoundActions::openTestTone(QObject *)
{
    _makeTestTone([] {});
}

void SoundActions::applyEffect(QObject *sender)
{
    const auto *item = qobject_cast<MenuItem *>(sender);
    const auto choice = item ? PlugInChoice::fromMenuItem(*item) : std::nullopt;
    if (!choice)
        return;
    m_lastEffect = choice;
    if (!m_document.isEmpty())
        return _applyEffect(*choice);
    _makeTestTone([this, choice = *choice] { _applyEffect(choice); });
}

void SoundActions::_applyEffect(const PlugInChoice &choice)
{
    const auto part = _part();
    if (!part)
        return;
    _start(
        formatted(localized("Applying %@…"), {choice.name}),
        [open = choice.open, source = m_document.result(), part = *part](WorkProgress &progress) {
            return SoundTasks::apply(open, source, part, progress);
        },
        [this, name = choice.name, extent = _extent()](const WorkResult &result) {
            if (result.clip)
                m_document.addStep({name, stationText(result.vendor, extent), result.clip});
            else
                _fail(formatted(localized("“%@” could not be applied."), {name}), result);
        });
}

void SoundActions::applyEffectAgain(QObject *)
{
    if (m_lastEffect && !m_document.isEmpty())
        _applyEffect(*m_lastEffect);
}

void SoundActions::applyEdit(QObject *sender)
{
    const QString name = sender ? sender->property("representedObject").toString() : QString();
    const SoundEdit *const edit = SoundEdits::named(name);
    const bool isSelected = !m_window.viewport().selection().isEmpty();
    if (edit && (isSelected || edit->needs == SoundEdit::Needs::Sound))
        _edit(localized(edit->title), edit->apply);
}

void SoundActions::changeGain(QObject *sender)
{
    const int decibels = sender ? sender->property("tag").toInt() : 0;
    const QString title = localized(decibels > 0 ? "Louder by %@ dB" : "Softer by %@ dB");
    _edit(platform::formatted(title, {QString::number(std::abs(decibels))}),
          [decibels](Sound &sound, FrameRange part) { SoundEdits::changeGain(sound, part, decibels); });
}

void SoundActions::cancelWork(QObject *)
{
    m_work.cancel();
}

/// The selection, else the whole result; none, and a word about it, where nothing of the result is selected: what is
/// shown may be an earlier, longer state.
std::optional<FrameRange> SoundActions::_part() const
{
    if (m_document.isEmpty())
        return std::nullopt;
    const FrameRange part = SoundTasks::partOf(m_document.result()->store, m_window.viewport().selection());
    if (part.count() > 0)
        return part;
    m_window.transport().showStatus(localized("The selection holds nothing of the result"));
    return std::nullopt;
}

/// What the next change is made to; asked when it begins, since one may select something else meanwhile.
QString SoundActions::_extent() const
{
    return m_window.viewport().selection().isEmpty() ? QString() : localized("Selection");
}

void SoundActions::_edit(const QString &title, Edit edit)
{
    const auto part = _part();
    if (!part)
        return;
    _start(
        formatted(localized("%@…"), {title}),
        [edit = std::move(edit), part = *part, source = m_document.result()](WorkProgress &) {
            return SoundTasks::edit(source, part, edit);
        },
        [this, title, extent = _extent()](const WorkResult &result) { _takeEdited(title, extent, result); });
}

void SoundActions::_takeEdited(const QString &title, const QString &extent, const WorkResult &result)
{
    if (!result.error.isEmpty())
        return _fail(formatted(localized("“%@” could not be applied."), {title}), result);
    if (!result.clip)
        return m_window.transport().showStatus(localized("Nothing would be left of the sound"));
    const bool isOtherLength = result.clip->store.frames() != m_document.result()->store.frames();
    m_document.addStep({title, stationText({}, extent), result.clip});
    if (isOtherLength)
        m_window.viewport().setSelection({});
}

void SoundActions::playInstrument(QObject *sender)
{
    const auto *item = qobject_cast<MenuItem *>(sender);
    const auto choice = item ? PlugInChoice::fromMenuItem(*item) : std::nullopt;
    if (!choice)
        return;
    _start(
        formatted(localized("Playing %@…"), {choice->name}),
        [open = choice->open](WorkProgress &progress) { return SoundTasks::play(open, progress); },
        [this, name = choice->name](const WorkResult &result) {
            if (result.clip)
                _takeSource(name, result.vendor.isEmpty() ? localized("Instrument") : result.vendor, result);
            else
                _fail(formatted(localized("“%@” could not be played."), {name}), result);
        });
}

void SoundActions::chooseSaveFormat(QObject *sender)
{
    if (sender)
        SaveRequest::setFormat(sender->property("tag").toLongLong());
}

void SoundActions::saveDocumentAs(QObject *)
{
    _saveAs(false);
}

void SoundActions::_saveAs(bool thenCloses)
{
    if (m_document.isEmpty() || m_work.isRunning())
        return;
    m_closeWhenSaved = thenCloses;
    platform::SavePanelRequest request = SaveRequest::make(m_document);
    request.window = &m_window;
    platform::System::current().filePanels().beginSavePanel(request, [this](int code, const QString &path) {
        if (code == platform::FilePanels::OK)
            _save(path);
        else
            m_closeWhenSaved = false;
    });
}

void SoundActions::_save(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    const auto format = SoundFile::formatFor(path, SaveRequest::format());
    const auto write = [path, format, clip = m_document.result()](WorkProgress &progress) {
        return SoundTasks::writeFile(path, clip, format, progress);
    };
    _start(formatted(localized("Saving %@…"), {name}), write, [this, path, name, format](const WorkResult &result) {
        if (result.clip)
            return _takeSaved(path, SoundFile::clips(format) && result.clip->peak > 1);
        m_closeWhenSaved = false;
        _fail(formatted(localized("“%@” could not be saved."), {name}), result);
    });
}

void SoundActions::_takeSaved(const QString &path, bool wasClipped)
{
    const QString name = QFileInfo(path).fileName();
    m_document.setSaved(name);
    const char *status = wasClipped ? "Saved %@; peaks above 0 dB were clipped" : "Saved %@";
    m_window.transport().showStatus(formatted(localized(status), {name}));
    if (HostSettings::isOn(HostSettings::showSavedKey))
        platform::openUrlOrTell(QUrl::fromLocalFile(QFileInfo(path).path()));
    if (m_closeWhenSaved)
        m_window.close();
}

void SoundActions::undoChange(QObject *)
{
    m_document.undo();
}

void SoundActions::redoChange(QObject *)
{
    m_document.redo();
}

/// What is under way would change, or is, what is to be saved: it ends first.
void SoundActions::_saveAndClose()
{
    if (m_work.isRunning()) {
        const auto once = static_cast<Qt::ConnectionType>(Qt::SingleShotConnection | Qt::UniqueConnection);
        connect(&m_work, &SoundWork::ended, this, &SoundActions::_saveAndClose, once); // however often it is asked for
        return m_work.cancel();
    }
    _saveAs(true);
}

bool SoundActions::_mayClose()
{
    if (!HostSettings::isOn(HostSettings::askKey))
        return true;
    return m_document.isModified() ? _maySave() : _mayLoseReplaced();
}

/// A sound that was left behind can still be had by Undo, but no longer after the end.
bool SoundActions::_mayLoseReplaced()
{
    const QString title = m_document.replacedUnsaved();
    const QStringList buttons{localized("Cancel"), localized("Close Anyway")};
    return title.isEmpty() || platform::runAlert({formatted(localized("What was done to “%@” is not saved."), {title}),
                                                  localized("Cancel, then undo, to have it back."), buttons}) == 1;
}

bool SoundActions::_maySave()
{
    const QStringList buttons{localized("Save As…"), localized("Don’t Save"), localized("Cancel")};
    const int answer = platform::runAlert({localized("Do you want to save the result before closing?"),
                                           localized("What was done to the sound is lost otherwise."), buttons});
    if (answer == 0)
        _saveAndClose();
    return answer == 1;
}

// Sets the title of an Undo or Redo item to what it would take back or do again.
bool SoundActions::_validateHistoryItem(MenuItem &item, const char *verb, const QString &change)
{
    const QString title = localized(verb);
    item.setTitle(change.isEmpty() ? title : title + " " + change);
    return !change.isEmpty() && !m_work.isRunning();
}

/// False for what would change a sound that is not there.
bool SoundActions::_validateEdit(const MenuItem &item) const
{
    const bool isEdit = item.action() == platform::Selector("applyEdit:");
    const bool changes = isEdit || item.action() == platform::Selector("changeGain:") ||
                         item.action() == platform::Selector("applyEffectAgain:");
    const SoundEdit *const edit = isEdit ? SoundEdits::named(item.representedObject().toString()) : nullptr;
    const bool needsSelection = edit && edit->needs == SoundEdit::Needs::Selection;
    return !(changes && m_document.isEmpty()) && !(needsSelection && m_window.viewport().selection().isEmpty());
}

bool SoundActions::validateMenuItem(QAction *action)
{
    auto *item = qobject_cast<MenuItem *>(action);
    const platform::Selector selector = item ? item->action() : platform::Selector();
    if (selector == platform::Selector("undoChange:"))
        return _validateHistoryItem(*item, "Undo", m_document.undoName());
    if (selector == platform::Selector("redoChange:"))
        return _validateHistoryItem(*item, "Redo", m_document.redoName());
    if (selector == platform::Selector("chooseSaveFormat:")) {
        item->setCheckable(true);
        item->setChecked(item->tag() == static_cast<qlonglong>(SaveRequest::format()));
        return true;
    }
    if (selector == platform::Selector("cancelWork:"))
        return m_work.isRunning();
    if (selector == platform::Selector("applyEffectAgain:") && !m_lastEffect)
        return false;
    if (item && !_validateEdit(*item))
        return false;
    if (selector == platform::Selector("saveDocumentAs:") && m_document.isEmpty())
        return false;
    return !m_work.isRunning();
}

} // namespace demo
