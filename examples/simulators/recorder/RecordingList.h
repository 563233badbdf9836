#pragma once

#include "ListFault.h"

#include <simulators/HttpBody.h>
#include <simulators/recorder/takes/RecorderTake.h>

#include <vector>

/// The list that a recorder serves.
struct RecordingList
{
    bool isBlue = false; ///< No compressed formats.
    bool isBinary = false;
    std::vector<ListFault> faults; ///< All at once.

    bool isEndless() const;

    /// The whole list. Any thread.
    QByteArray text(const std::vector<RecorderTake> &takes) const;

    /// The list of @p takes, at least one, over and over.
    HttpBody endless(const std::vector<RecorderTake> &takes) const;

private:
    QByteArray _entries(const std::vector<RecorderTake> &takes) const;
    QVariant _entry(const RecorderTake &take, qsizetype index) const;
};
