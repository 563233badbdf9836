#pragma once

#include "QWUtilities/recorder/browse/DownloadQueue.h"
#include "QWUtilities/recorder/browse/RecorderList.h"

#include <QWUtilities/qwutilities_private.h>

#include <QString>

namespace qw
{

// What the window says besides titles and values. All plain, whatever names and titles hold.

/// What the table says when it has no rows; "" when it has.
struct EmptyState
{
    enum Kind
    {
        Rows, ///< There are rows.
        LookingForRecorders,
        NoRecorder,
        NoNetService,
        LoadingTakes,
        NoAnswer, ///< The recorder is announced, and nobody answers there.
        NoTakes,
        NothingFound
    };

    /// @p device: the selected recorder, or null. @p searchText: what the takes were searched for.
    static Kind kindOf(RecorderList::State state, const QWVeskDevice *device, const QString &searchText, int rows);

    /// The sentence, with the recorder's name or the text searched for in it.
    static QString textOf(Kind kind, const QWVeskDevice *device, const QString &searchText);
};

/// "12 recordings"; with a selection "2 of 12 recordings, 24.8 MB"; "" without recordings.
QString selectionText(const std::vector<std::shared_ptr<QWVeskRecording>> &selected, int rows);

/// "12.4 MB of 80.0 MB, 3.1 MB a second, 0:22 left", as far as it is known.
QString progressText(const DownloadProgress &progress);

/// The window's, with the selected recorder's name. "[*]" in it is no place for a mark.
QString windowTitle(const QString &title, const QWVeskDevice *device);

} // namespace qw
