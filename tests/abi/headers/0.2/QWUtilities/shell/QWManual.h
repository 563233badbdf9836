#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

namespace platform
{
class Panel;
class WebView;
} // namespace platform

/// Shows the host's manual, its legal text and its acknowledgements, and keeps the manual up to date from the support
/// site. One per System, kept once made; closing the window only hides it. Main thread.
///
/// The actions below are also those of the window's toolbar and keys, and a host's menu items may send them. As long as
/// the window has not been opened they do nothing.
class QWUTILITIES_EXPORT QWManual : public QObject
{
    Q_OBJECT

public:
    /// The manual of the current System, made on first use, which opens nothing yet.
    static QWManual &manual();

    /// Brings the window to the front; with its first opening the manual is unpacked and the support site asked for a
    /// newer one. This and the next two need a QWApplication and the interface file "QWManual"; without, nothing opens.
    static void openManual();

    /// As openManual(), then legal().
    static void openLegal();

    /// As openManual(), then acknowledgements().
    static void openAcknowledgements();

    /// True when the host carries a manual of its own ("Manual.zip" in its resources).
    static bool appUsesQWManual();

    /// Closes the window and ends a running download; the System does so.
    ~QWManual() override;

    /// To the page before, if there is one. No action looks at its @p sender.
    Q_INVOKABLE void back(QObject *sender = nullptr);

    /// To the page from which back() came, if it did; @p sender as for back().
    Q_INVOKABLE void forward(QObject *sender = nullptr);

    /// Shows the manual's first page; @p sender as for back().
    Q_INVOKABLE void home(QObject *sender = nullptr);

    /// Asks the user for a printer and prints the page. An alert tells of a failure; @p sender as for back().
    Q_INVOKABLE void print(QObject *sender = nullptr);

    /// Asks the user for a file and writes the page into it, paginated. An alert tells of a failure; @p sender as for
    /// back().
    Q_INVOKABLE void printToPDF(QObject *sender = nullptr);

    /// Shows the framework's legal text with the application's name in it; @p sender as for back().
    Q_INVOKABLE void legal(QObject *sender = nullptr);

    /// Shows the page "acknowledgements.html" of the manual; @p sender as for back().
    Q_INVOKABLE void acknowledgements(QObject *sender = nullptr);

    /// Cancels the download of a newer manual; the one that is there stays. @p sender as for back().
    Q_INVOKABLE void stopProgress(QObject *sender = nullptr);

    /// Not to be deleted; null before the first opening.
    platform::Panel *window() const;

    /// The view that shows the pages. Not to be deleted; null before the first opening.
    platform::WebView *contentView() const;

protected:
    /// Only for manual().
    QWManual();

private:
    class Private;
    std::unique_ptr<Private> d;
};
