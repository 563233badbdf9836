#pragma once

#include "PlugInChoice.h"
#include "SoundWork.h"

#include "../audio/AudioDocument.h"
#include "../audio/SoundEdits.h"

class QAction;

namespace platform
{
class MenuItem;
}

namespace demo
{

class MainWindow;

/// What the user can do with the sound: the receiver of the menus' actions, and the one who starts work, keeps the
/// document and tells failures.
class SoundActions : public QObject
{
    Q_OBJECT

public:
    SoundActions(AudioDocument &document, MainWindow &window);

    /// Extensions of the files that can be opened, as in "CFBundleDocumentTypes".
    static const QStringList &readableTypes();

    /// While there is other work, when that has ended; of several files the last one.
    void openFile(const QString &path);
    const SoundWork &work() const { return m_work; }

    // Actions of menu items.
    Q_INVOKABLE void openDocument(QObject *sender);
    Q_INVOKABLE void openTestTone(QObject *sender);
    Q_INVOKABLE void saveDocumentAs(QObject *sender);
    Q_INVOKABLE void chooseSaveFormat(QObject *sender); ///< The sender's tag is the format.
    Q_INVOKABLE void undoChange(QObject *sender);
    Q_INVOKABLE void redoChange(QObject *sender);
    Q_INVOKABLE void applyEffect(QObject *sender);
    Q_INVOKABLE void applyEffectAgain(QObject *sender); ///< The last one that was chosen.
    Q_INVOKABLE void playInstrument(QObject *sender);
    Q_INVOKABLE void applyEdit(QObject *sender);  ///< The represented object names it, see SoundEdits.
    Q_INVOKABLE void changeGain(QObject *sender); ///< The sender's tag, in decibels.
    Q_INVOKABLE void cancelWork(QObject *sender);
    Q_INVOKABLE bool validateMenuItem(QAction *item);

private:
    using Edit = std::function<void(Sound &sound, FrameRange part)>;

    void _start(const QString &status, SoundWork::Work work, SoundWork::Done done);
    void _takeSource(const QString &title, const QString &origin, const WorkResult &result);
    void _makeTestTone(const std::function<void()> &whenMade);
    void _applyEffect(const PlugInChoice &choice);
    std::optional<FrameRange> _part() const;
    QString _extent() const;
    void _edit(const QString &title, Edit edit);
    void _takeEdited(const QString &title, const QString &extent, const WorkResult &result);
    bool _validateEdit(const platform::MenuItem &item) const;
    void _saveAs(bool thenCloses);
    void _save(const QString &path);
    void _takeSaved(const QString &path, bool wasClipped);
    void _openNextFile();
    void _fail(const QString &message, const WorkResult &result);
    void _saveAndClose();
    bool _mayClose();
    bool _maySave();
    bool _mayLoseReplaced();
    bool _validateHistoryItem(platform::MenuItem &item, const char *verb, const QString &change);

    AudioDocument &m_document;
    MainWindow &m_window;
    SoundWork m_work;
    QString m_nextFile; ///< To be opened when the work has ended; "" for none.
    std::optional<PlugInChoice> m_lastEffect;
    bool m_closeWhenSaved = false;
};

} // namespace demo
