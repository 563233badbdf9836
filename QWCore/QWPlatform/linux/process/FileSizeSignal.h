#pragma once

namespace platform
{

/// The signal that a write beyond the allowed size of a file sends ends the process by default, in the middle of the
/// write. From here on it does nothing, and the write fails like any other. Children have the default again. Who has a
/// handler of its own keeps it.
void ignoreFileSizeSignal();

} // namespace platform
