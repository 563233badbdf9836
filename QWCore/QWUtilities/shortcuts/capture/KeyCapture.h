#pragma once

#include "QWUtilities/shortcuts/QWShortcutKey.h"

#include <QString>

#include <memory>

class QWKeyboardShortcuts;
class QWShortcut;

namespace qw
{

/// What is being captured for a shortcut: the key last pressed, and whether it may be the shortcut's. Knows no widgets.
class KeyCapture
{
public:
    /// @p registry outlives this.
    explicit KeyCapture(QWKeyboardShortcuts &registry);
    ~KeyCapture();
    KeyCapture(const KeyCapture &) = delete;
    KeyCapture &operator=(const KeyCapture &) = delete;

    /// Whether the key is allowed stays as the capture before left it.
    void begin(std::shared_ptr<QWShortcut> shortcut);
    void end();

    /// A key that went down, or a change of the modifiers. A key that repeats is one press.
    void see(const platform::KeyEvent &event);

    /// Clears the key; with Option, that of the other shortcut which has it.
    void clear();

    /// Clears the key of the other shortcut which has it, at once and for good; nothing when none has.
    void clearOther();

    /// Gives the shortcut the key and keeps it. Only when it is allowed.
    void commit();

    const std::shared_ptr<QWShortcut> &editingShortcut() const { return m_editingShortcut; } ///< Null between edits.
    const QWShortcutKey &editingKey() const { return m_editingKey; }
    const QString &refusal() const { return m_refusal; } ///< Why the key is not allowed, or "".
    bool isAllowed() const { return m_isAllowed; }
    bool canClear() const { return m_canClear; }
    bool clearsOther() const { return m_clearsOther; }
    bool isInUse() const { return _conflict() != nullptr; } ///< The key is another shortcut's.
    QString nameOfOther() const;                            ///< Of the shortcut that has the key; "" for none.

    /// Name of the shortcut that lost its key since a key was last pressed, or "".
    const QString &clearedName() const { return m_clearedName; }

    /// Escape, by itself, was pressed twice with nothing between.
    bool wantsToLeave() const { return m_escapes >= 2; }

private:
    std::shared_ptr<QWShortcut> _conflict() const; ///< Null between edits.
    void _keyDown(const platform::KeyEvent &event);
    void _judge();

    QWKeyboardShortcuts &m_registry;
    std::shared_ptr<QWShortcut> m_editingShortcut;
    QWShortcutKey m_editingKey;
    QString m_refusal;
    QString m_clearedName;
    bool m_isAllowed = true;
    bool m_canClear = false;
    bool m_clearsOther = false;
    int m_escapes = 0;
};

} // namespace qw
