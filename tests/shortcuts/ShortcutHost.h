#pragma once

#include "fakes/FakeSystem.h"

#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <QMainWindow>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

/// The end of the responder chain: writes down what it is sent, as "action tag".
class ShortcutReceiver : public QObject
{
    Q_OBJECT

public:
    ShortcutReceiver();
    ~ShortcutReceiver() override;

    Q_INVOKABLE void play(QObject *sender) { _note("play", sender); }
    Q_INVOKABLE void stop(QObject *sender) { _note("stop", sender); }
    Q_INVOKABLE void save(QObject *sender) { _note("save", sender); }
    Q_INVOKABLE bool validateMenuItem(QAction *item);

    QStringList sent;
    QList<QPointer<QObject>> senders;
    QVariantList representedObjects;
    bool allows = true;
    QStringList validated;             ///< What the items carried, as "action tag".
    std::function<void()> whileActing; ///< Run by each action.

private:
    void _note(const QString &action, QObject *sender);
};

/// State of a shortcut, enabled and without a represented object unless changed.
QVariantMap shortcutState(const QString &name, const QString &action, char16_t character, quint32 modifiers = 0,
                          int tag = 0);
QVariantMap groupState(const QString &name, const QVariantList &shortcuts, bool isMenu = false);

/// A machine whose host ships these groups.
class ShortcutSystem : public FakeSystem
{
public:
    explicit ShortcutSystem(const QVariantList &groups = {});

    void setFactory(const QVariantList &groups) const;
    void setCurrent(const QVariantList &changes) const;
    QVariantList current() const;

    /// Real path of a file in the folder of the shortcuts.
    static QString path(const QString &name);

private:
    platform::SystemScope m_scope{*this};
};
