#pragma once

#include "RecordingKeys.h"

namespace qw
{

/// The takes of one recorder, in its order. Stays as it is once made.
struct RecordingList
{
    using Recordings = RecordingKeys::Recordings;

    Recordings recordings;
    RecordingKeys keys;
    std::shared_ptr<const void> claim; ///< See ListLoads.
};

} // namespace qw
