#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

/// The user before the window of recorders: finds what stands in it by the names of its interface file.
class BrowserDriver
{
public:
    static constexpr int longEnough = 60'000; ///< In milliseconds.

    /// Null while there is none of that name.
    template <class Widget = QWidget>
    static Widget *find(const char *name)
    {
        for (QWidget *const widget : QApplication::allWidgets())
            if (widget->objectName() == QLatin1String(name))
                if (auto *const found = qobject_cast<Widget *>(widget))
                    return found;
        return nullptr;
    }

    static bool until(const std::function<bool()> &holds) { return QTest::qWaitFor(holds, longEnough); }

    static QWidget *window() { return takes() ? takes()->window() : nullptr; }
    static QAbstractItemView *takes() { return find<QAbstractItemView>("recordingTable"); }
    static QAbstractItemView *devices() { return find<QAbstractItemView>("deviceTable"); }
    static QComboBox *formats() { return find<QComboBox>("formatPopup"); }
    static QPushButton *saveButton() { return find<QPushButton>("saveButton"); }
    static QPushButton *stopButton() { return find<QPushButton>("stopButton"); }
    static QWidget *sheet() { return find("progressPanel"); }

    static int count() { return takes() ? takes()->model()->rowCount() : 0; }
    static QString title(int row) { return takes()->model()->index(row, 0).data().toString(); }
    static bool listsTakes(int number)
    {
        return until([number] { return count() == number; });
    }

    static QStringList deviceNames()
    {
        QStringList names;
        const QModelIndex group = devices()->model()->index(0, 0);
        for (int row = 0; row < devices()->model()->rowCount(group); ++row)
            names += devices()->model()->index(row, 0, group).data().toString();
        return names;
    }

    static void selectDevice(int row)
    {
        const QModelIndex group = devices()->model()->index(0, 0);
        devices()->setCurrentIndex(devices()->model()->index(row, 0, group));
    }

    static void select(int first, int last)
    {
        const QAbstractItemModel &model = *takes()->model();
        const QItemSelection rows(model.index(first, 0), model.index(last, 0));
        takes()->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }

    /// False where the menu does not have it.
    static bool chooseFormat(const QString &title)
    {
        formats()->setCurrentIndex(formats()->findText(title));
        return formats()->currentText() == title;
    }

    static bool isSaving() { return sheet() && sheet()->isVisible(); }
    static bool hasEnded()
    {
        return until([] { return !isSaving(); });
    }

    /// What the sheet says of what failed; "" while nothing did.
    static QString failure()
    {
        auto *const text = find<QLabel>("failureText");
        return text && isSaving() ? text->text() : QString();
    }

    static bool fails()
    {
        return until([] { return !failure().isEmpty(); });
    }

    static bool hasBegunToArrive()
    {
        return until([] { return isSaving() && find<QProgressBar>("progressBar")->value() > 0; });
    }

    static void escape() { QTest::keyClick(sheet(), Qt::Key_Escape); }
};
