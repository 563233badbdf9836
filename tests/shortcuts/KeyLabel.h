#pragma once

#include <QKeyEvent>
#include <QLabel>
#include <QList>

/// Writes down the keys that reach it.
class KeyLabel : public QLabel
{
public:
    KeyLabel()
        : QLabel("keys")
    {
        setFocusPolicy(Qt::StrongFocus);
        setMinimumSize(200, 60);
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress ||
            event->type() == QEvent::KeyRelease) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            auto &list = event->type() == QEvent::KeyPress     ? presses
                         : event->type() == QEvent::KeyRelease ? releases
                                                               : questions;
            list.append(key);
        }
        return QLabel::event(event);
    }

    void keyPressEvent(QKeyEvent *event) override { event->ignore(); }

    QList<int> questions;
    QList<int> presses;
    QList<int> releases;
};
