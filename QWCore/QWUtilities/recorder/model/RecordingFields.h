#pragma once

#include "QWVeskRecording.h"

#include <string_view>

namespace qw
{

/// What a recorder tells of a take, by the keys of its list.
enum class RecordingField
{
    Title,
    Filename,
    CreationDate,
    ModificationDate,
    FileSize,
    Length,
    Channels,
    Quality,
    Formats,
    Locked,
    Keywords,
    Unknown,
};

/// The field that @p key (UTF-8) names.
RecordingField recordingFieldOf(std::string_view key);

/// The text that @p field is in @p state, or null when it is none.
QString *recordingText(RecordingState &state, RecordingField field);

/// Sets @p field to what @p value tells, or empties it when that is of another kind. Numbers may be of any kind; one
/// beyond what the field can hold is 0, and a quality that there is not.
void setRecordingField(RecordingState &state, RecordingField field, const QVariant &value);

} // namespace qw
