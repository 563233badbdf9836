#pragma once

#include "KeyLabel.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMainWindow>
#include <QMenuBar>
#include <QVBoxLayout>

/// The main window of a host, with an item Play in its menu Transport.
class HostWindow : public QMainWindow
{
public:
    HostWindow()
    {
        menu = menuBar()->addMenu("&Transport");
        play = platform::addMenuItem(*menu, "Play");
        auto *const content = new QWidget;
        auto *const layout = new QVBoxLayout(content);
        layout->addWidget(&label);
        setCentralWidget(content);
        label.setFocus();
    }

    ~HostWindow() override { label.setParent(nullptr); }

    /// Takes a widget, which gets the focus.
    template <class Widget>
    Widget *add(Widget *widget)
    {
        centralWidget()->layout()->addWidget(widget);
        widget->setFocus();
        return widget;
    }

    KeyLabel label;
    QMenu *menu;
    platform::MenuItem *play;
};
