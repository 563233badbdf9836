#pragma once

#include "Clip.h"

#include <QObject>
#include <QString>

#include <vector>

namespace demo
{

/// One plug-in that the sound went through.
struct Step
{
    QString name;
    QString vendor; ///< May be empty.
    ClipPointer result;
};

/// The sound at hand: where it came from and what was done to it, with undo. Main thread.
class AudioDocument : public QObject
{
    Q_OBJECT

public:
    static constexpr size_t longestHistory = 32; ///< States that undo can go back to.

    explicit AudioDocument(QObject *parent = nullptr);

    bool isEmpty() const { return !_state().source; }

    /// Name of the sound as it is now, for titles: that of the file that holds it, else of the one it comes from.
    const QString &title() const { return _state().title; }

    /// Name of the source, however the result was saved.
    const QString &sourceTitle() const { return _state().sourceTitle; }

    /// Where the source came from, in words for the chain ("File", "Built-in", the vendor of an instrument).
    const QString &origin() const { return _state().origin; }

    const ClipPointer &source() const { return _state().source; }
    const std::vector<Step> &steps() const { return _state().steps; }

    /// The sound as it is now: the last step's result, else the source; null when the document is empty.
    ClipPointer result() const;

    /// What step @p index was given.
    ClipPointer before(size_t index) const;

    /// Replaces source and steps; can be undone.
    void setSource(const QString &title, const QString &origin, ClipPointer source);
    void addStep(Step step);

    bool canUndo() const { return m_current > 0; }
    bool canRedo() const { return m_current + 1 < m_history.size(); }
    void undo();
    void redo();

    /// What undo and redo would take back or do again, for their menu items; "" when they cannot.
    QString undoName() const;
    QString redoName() const;

    /// True when something was done to the sound and it was not saved since.
    bool isModified() const;
    /// In a file named @p title; "": the title stays.
    void setSaved(const QString &title = {});

    /// Title of the last sound that another one took the place of before its result was saved; "" when there is none.
    QString replacedUnsaved() const;

Q_SIGNALS:
    void changed();

private:
    struct State
    {
        QString change; ///< What led to this state.
        QString title;
        QString sourceTitle;
        QString origin;
        ClipPointer source;
        std::vector<Step> steps;
        bool saved = true;
    };

    const State &_state() const { return m_history[m_current]; }
    void _push(State state);

    std::vector<State> m_history; ///< Never empty; the first may be the empty document.
    size_t m_current = 0;
};

} // namespace demo
