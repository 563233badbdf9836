#pragma once

#include <QComboBox>
#include <QDateTimeEdit>
#include <QFontComboBox>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

#include <functional>

using MakeWidget = std::function<QWidget *()>;

template <class Widget>
MakeWidget plain()
{
    return [] { return new Widget; };
}

template <class Widget>
MakeWidget readOnly()
{
    return [] {
        auto *const widget = new Widget;
        widget->setReadOnly(true);
        return widget;
    };
}

inline QWidget *editableCombo()
{
    auto *const combo = new QComboBox;
    combo->setEditable(true);
    return combo;
}

inline QWidget *editableLabel()
{
    auto *const label = new QLabel("text");
    label->setTextInteractionFlags(Qt::TextEditorInteraction);
    return label;
}

inline QWidget *sceneWithText()
{
    auto *const view = new QGraphicsView;
    auto *const scene = new QGraphicsScene(view);
    auto *const item = scene->addText("text");
    item->setTextInteractionFlags(Qt::TextEditorInteraction);
    scene->setFocusItem(item);
    view->setScene(scene);
    return view;
}

inline QWidget *renamedRow()
{
    auto *const tree = new QTreeWidget;
    auto *const row = new QTreeWidgetItem({"name"});
    row->setFlags(row->flags() | Qt::ItemIsEditable);
    tree->addTopLevelItem(row);
    QMetaObject::invokeMethod(
        tree, [tree, row] { tree->editItem(row); }, Qt::QueuedConnection);
    return tree;
}

Q_DECLARE_METATYPE(MakeWidget)

/// A row for each widget that is typed into, or whose text can be selected.
inline void textWidgets()
{
    QTest::addColumn<MakeWidget>("make");
    QTest::newRow("line edit") << plain<QLineEdit>();
    QTest::newRow("read-only line edit") << readOnly<QLineEdit>();
    QTest::newRow("text edit") << plain<QTextEdit>();
    QTest::newRow("read-only text edit") << readOnly<QTextEdit>();
    QTest::newRow("plain text edit") << plain<QPlainTextEdit>();
    QTest::newRow("read-only plain text edit") << readOnly<QPlainTextEdit>();
    QTest::newRow("text browser") << plain<QTextBrowser>();
    QTest::newRow("spin box") << plain<QSpinBox>();
    QTest::newRow("read-only spin box") << readOnly<QSpinBox>();
    QTest::newRow("double spin box") << plain<QDoubleSpinBox>();
    QTest::newRow("date") << plain<QDateEdit>();
    QTest::newRow("time") << plain<QTimeEdit>();
    QTest::newRow("date and time") << plain<QDateTimeEdit>();
    QTest::newRow("editable combo box") << MakeWidget(editableCombo);
    QTest::newRow("font combo box") << plain<QFontComboBox>();
    QTest::newRow("editable label") << MakeWidget(editableLabel);
    QTest::newRow("text in a scene") << MakeWidget(sceneWithText);
    QTest::newRow("row being renamed") << MakeWidget(renamedRow);
}
