#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QWidget;

/// The window in which the user finds recorders on the local network, searches and sorts their recordings, and saves
/// those selected in a format of choice. One per System, kept once made. Main thread.
///
/// Its user defaults: "QWVeskBrowserRecordingTableColumns" (columns of the table), "QWVeskBrowserSortDescriptor" (the
/// sort), both written when the window closes, and "QWVeskBrowserContinuesAfterFailure" (a truth value, off at first:
/// recordings after one that could not be saved are saved all the same). Saved files are opened, where the user wants
/// that, with QWApplication::openFile() if the host's document types name their extension, else as the desktop does.
class QWUTILITIES_EXPORT QWVeskBrowser : public QObject
{
    Q_OBJECT

public:
    /// The browser of the current System, made on first use, which opens nothing yet.
    static QWVeskBrowser &sharedInstance();

    /// Brings the window to the front, in the middle of the screen at first, and starts to look for recorders; where it
    /// is open already, looks anew. Needs a QWApplication and the interface file "QWVeskBrowser"; without, nothing
    /// opens.
    static void openWindow();

    /// The window; null until it has been opened. Closing it ends the search and a download, whose file is removed.
    QWidget *window() const;

    /// Closes the window; the System does so.
    ~QWVeskBrowser() override;

    /// Lets the user choose a folder and saves the selected recordings there. Actions do nothing as long as the window
    /// has not been opened, and none looks at its @p sender.
    Q_INVOKABLE void save(QObject *sender = nullptr);

    /// Ends saving with the next piece of data; @p sender as for save().
    Q_INVOKABLE void stop(QObject *sender = nullptr);

    /// Shows what the search field says; @p sender as for save().
    Q_INVOKABLE void searchChanged(QObject *sender = nullptr);

    /// Looks for recorders anew, and reads the lists of those that are there; @p sender as for save().
    Q_INVOKABLE void reload(QObject *sender = nullptr);

    /// Saves once more what could not be saved; @p sender as for save().
    Q_INVOKABLE void tryAgain(QObject *sender = nullptr);

    /// As stop(); after a failure gives the window back; @p sender as for save().
    Q_INVOKABLE void closeProgress(QObject *sender = nullptr);

    /// Sees Return in the window, and the end of the application, which ends a download.
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    QWVeskBrowser();

private:
    class Private;
    std::unique_ptr<Private> d;
};
