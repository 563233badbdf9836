#pragma once

#include "QWVeskRecording.h"

#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

namespace qw
{

/// Reads the list of takes that a recorder serves: a property list, an array of dictionaries. Any thread.
namespace RecordingListReader
{

/// A list with more entries than that, many times what a recorder holds, does not load: a few bytes each would do to
/// fill the memory.
constexpr size_t mostTakes = 200'000;

/// The takes in @p data, in their order; entries that are no dictionaries are passed over. None when it is no property
/// list, not whole, or no array, and none when @p isStopped, asked now and then, says so.
QWUTILITIES_TEST_EXPORT std::optional<std::vector<RecordingState>> read(const QByteArray &data,
                                                                        const std::function<bool()> &isStopped = {});

/// What @p entry, a dictionary of the list, tells.
QWUTILITIES_TEST_EXPORT RecordingState stateOf(const QVariantMap &entry);

} // namespace RecordingListReader

} // namespace qw
