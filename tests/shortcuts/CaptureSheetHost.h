#pragma once

#include "EditorHost.h"

#include <QLabel>
#include <QPushButton>

/// A host with the editor open, and the parts of its capture sheet.
struct CaptureSheetHost : EditorHost
{
    CaptureSheetHost()
        : isOpen(open())
    {
        if (!isOpen)
            return;
        intro = outlet<QLabel>("setShortcutIntroText");
        shown = outlet<QLabel>("shortcutText");
        outro = outlet<QLabel>("setShortcutOutroText");
        ok = outlet<QPushButton>("okButton");
        cancel = outlet<QPushButton>("cancelButton");
        clear = outlet<QPushButton>("clearButton");
        clearOther = outlet<QPushButton>("clearOtherButton");
        hint = outlet<QLabel>("setShortcutHintText");
    }

    static void click(QPushButton *button, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(button, Qt::LeftButton, modifiers);
    }

    static QString inUse(const QString &name) { return "Sorry, that key combination is in use by '" + name + "'."; }

    const bool isOpen;
    QLabel *intro = nullptr;
    QLabel *shown = nullptr;
    QLabel *outro = nullptr;
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
    QPushButton *clear = nullptr;
    QPushButton *clearOther = nullptr;
    QLabel *hint = nullptr;

    static inline const QString reserved = "Sorry, that key combination is reserved.";
};
