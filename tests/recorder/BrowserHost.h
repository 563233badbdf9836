#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <QWUtilities/recorder/window/QWVeskBrowserRecordingsTable.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QWindow>

/// A host with the browser on a network and a disk of the test's own.
class BrowserHost
{
public:
    ~BrowserHost() { system.releaseShared(); }

    /// Take number n is n seconds long; its file is "take<n>".
    static QVariantMap take(int number, const QString &keywords = {},
                            const QStringList &formats = {"aac", "podcast", "appleLossless", "flac", "vorbis"})
    {
        return {{"title", QString("Take %1").arg(number)},
                {"filename", QString("take%1").arg(number)},
                {"creationDate", QDateTime(QDate(2009, 3, 5), QTime(16, 7), QTimeZone::utc())},
                {"modificationDate", QDateTime(QDate(2009, 3, 6), QTime(9, 0), QTimeZone::utc())},
                {"fileSize", 1000000 * number},
                {"length", double(number)},
                {"channels", 2},
                {"quality", 0},
                {"formats", QVariantList(formats.begin(), formats.end())},
                {"locked", false},
                {"keywords", keywords}};
    }

    static QVariantList takes(int count)
    {
        QVariantList entries;
        for (int number = 1; number <= count; ++number)
            entries.append(take(number));
        return entries;
    }

    /// Announces a recorder at 192.0.2.@p place whose list is @p entries.
    void announce(const QString &name, const QVariantList &entries, int place = 7)
    {
        const QString address = "192.0.2." + QString::number(place);
        system.urlLoader.answer("http://" + address + ":8123/list.plist", platform::PropertyList::toXml(entries));
        system.netServices.announce(name, {address});
    }

    /// Opens the window and waits until it is key.
    bool open()
    {
        QWVeskBrowser::openWindow();
        return window() && becomesKey();
    }

    /// The off-screen platform gives the keys to nobody when a sheet goes.
    bool becomesKey()
    {
        window()->activateWindow();
        return QTest::qWaitFor([this] { return QApplication::activeWindow() == window(); });
    }

    /// Answers the question for the recorder's address, and waits until its list is there.
    bool resolve(const QString &name, const QString &shown)
    {
        if (!QTest::qWaitFor([&] { return system.netServices.resolve(name); }))
            return false;
        return QTest::qWaitFor([&] { return devices().contains(shown); });
    }

    /// A window that shows the takes of "Studio".
    bool openWith(const QVariantList &entries)
    {
        announce("Vesk on Studio", entries);
        return open() && resolve("Vesk on Studio", "Studio");
    }

    QWidget *window() const { return QWVeskBrowser::sharedInstance().window(); }

    template <class T>
    T &outlet(const char *name) const
    {
        return *window()->findChild<T *>(name);
    }

    QWVeskBrowserRecordingsTable &table() const { return outlet<QWVeskBrowserRecordingsTable>("recordingTable"); }
    QTreeView &outline() const { return outlet<QTreeView>("deviceTable"); }
    QLineEdit &searchField() const { return outlet<QLineEdit>("searchField"); }
    QComboBox &formats() const { return outlet<QComboBox>("formatPopup"); }
    QPushButton &saveButton() const { return outlet<QPushButton>("saveButton"); }
    QDialog &sheet() const { return outlet<QDialog>("progressPanel"); }
    QString text(const char *label) const { return outlet<QLabel>(label).text(); }
    QString emptyText() const { return table().accessibleDescription(); }

    /// Below the group.
    QStringList devices() const
    {
        const QAbstractItemModel &items = *outline().model();
        const QModelIndex group = items.index(0, 0);
        QStringList names;
        for (int row = 0; row < items.rowCount(group); ++row)
            names.append(items.index(row, 0, group).data().toString());
        return names;
    }

    QString selectedDevice() const
    {
        const QModelIndexList rows = outline().selectionModel()->selectedIndexes();
        return rows.isEmpty() ? QString() : rows.first().data().toString();
    }

    int section(const QString &identifier) const
    {
        const QAbstractItemModel &rows = *table().model();
        for (int column = 0; column < rows.columnCount(); ++column)
            if (rows.headerData(column, Qt::Horizontal, QWTableColumn::IdentifierRole) == identifier)
                return column;
        return -1;
    }

    QString cell(int row, const QString &identifier) const
    {
        return table().model()->index(row, section(identifier)).data().toString();
    }

    QStringList titles() const { return titlesOf(rows(table().model()->rowCount())); }
    QStringList selectedTitles() const { return titlesOf(table().selectedRows()); }

    QStringList formatTitles() const
    {
        QStringList items;
        for (int item = 0; item < formats().count(); ++item)
            items.append(formats().itemText(item));
        return items;
    }

    QStringList columns() const
    {
        QStringList identifiers;
        const QList<QWTableColumn> shown = table().tableColumns();
        for (const QWTableColumn &column : shown)
            identifiers.append(column.identifier);
        return identifiers;
    }

    void clickHeader(const QString &identifier) const
    {
        QHeaderView &header = *table().horizontalHeader();
        const int left = header.sectionViewportPosition(section(identifier));
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(left + 10, header.height() / 2));
    }

    /// As from the window system, to the window with the keyboard.
    static void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
    }

    /// Saves what is selected into ~/Music; false when no folder was asked for, or no sheet came up and got the keys.
    bool save()
    {
        QWVeskBrowser::sharedInstance().save();
        return becomesKey() && chooseFolder();
    }

    bool chooseFolder()
    {
        system.makeDirectory("~/Music");
        if (system.filePanels.opens.empty())
            return false;
        system.filePanels.endOpen(platform::FilePanels::OK, {folder()});
        return QTest::qWaitFor([this] { return QApplication::activeWindow() == &sheet(); });
    }

    QString folder() const { return system.real("~/Music"); }

    /// The download that runs gets all its data.
    void finishDownload()
    {
        system.urlDownloads.respond(4);
        system.urlDownloads.receive("data");
        system.urlDownloads.finish();
    }

    FakeSystem system;
    platform::SystemScope scope{system};

private:
    static QList<int> rows(int count)
    {
        QList<int> all;
        for (int row = 0; row < count; ++row)
            all.append(row);
        return all;
    }

    QStringList titlesOf(const QList<int> &wanted) const
    {
        QStringList texts;
        for (const int row : wanted)
            texts.append(cell(row, "title"));
        return texts;
    }
};
