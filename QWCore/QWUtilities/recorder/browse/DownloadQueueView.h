#pragma once

#include "QWUtilities/recorder/model/QWVeskRecording.h"

#include <QWUtilities/qwutilities_private.h>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace qw
{

/// What is known of the download that runs.
struct DownloadProgress
{
    quint64 received = 0;              ///< Bytes.
    std::optional<quint64> expected;   ///< Bytes; none where the recorder did not tell.
    std::optional<double> rate;        ///< Bytes a second, of the last few seconds; none at first.
    std::optional<double> secondsLeft; ///< None while rate or length are unknown.
};

/// A take that could not be saved.
struct FailedDownload
{
    std::shared_ptr<QWVeskRecording> recording;
    QString reason; ///< For the user.
};

/// The window and the sheet on it, as far as the queue has to do with them. Main thread.
class QWUTILITIES_TEST_EXPORT DownloadQueueView
{
public:
    using Recordings = std::vector<std::shared_ptr<QWVeskRecording>>;

    virtual ~DownloadQueueView();

    /// On which the folder chooser and the progress sheet hang.
    virtual QWidget *window() const;

    /// @{
    /// As they are when a folder was chosen: takes of the selected rows in row order, title of the format menu's
    /// current item (English).
    virtual Recordings selectedRecordings() const;
    virtual QString selectedFormatTitle() const;
    /// @}

    /// Whether each file is to be opened once it is saved; asked for each.
    virtual bool opensAfterSave() const;

    /// @{
    /// The sheet comes, before the first download starts, and goes.
    virtual void beginProgressSheet();
    virtual void endProgressSheet();
    /// @}

    /// Whether the window may be hidden: not during downloads.
    virtual void setWindowCanHide(bool canHide);

    /// The sheet's message, plain text whatever it holds: a download begins, also again after showFailures().
    virtual void setProgressText(const QString &text);

    /// 0.0 to 1.0, whatever the recorder says.
    virtual void setProgress(double fraction);

    /// The line below; at most ten times a second, and not before anything is known.
    virtual void setProgressDetails(const DownloadProgress &progress);

    /// The download that ran has failed and nothing goes on by itself: the sheet stays, its stop button does nothing,
    /// close() gives the window back. @p line says so, for the user.
    virtual void showFailure(const QString &line);

    /// The queue went on after failures and is at its end; the sheet stays with what failed, for tryAgain() or close().
    virtual void showFailures(const std::vector<FailedDownload> &failures);
};

} // namespace qw
