#pragma once

#include <QWPlatform/appkit/MenuItem.h>

#include <QObject>

/// Keeps who sent it what, and allows or refuses.
class MenuTarget : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void choose(QObject *sender) { senders.append(sender); }
    Q_INVOKABLE void plain() { ++plains; }
    Q_INVOKABLE bool validateMenuItem(QAction *item) { return platform::titleOf(*item) != refused; }

    QObjectList senders;
    QString refused;
    int plains = 0;
};
