#pragma once

#include <simulators/recorder/takes/RecorderTake.h>

#include <vector>

/// The sound files in the folder @p path and the folders in it, by name, with their true values: titles are names
/// without extension, keywords the folders' names and what the files say of themselves. @p withProgram: the formats
/// that ffmpeg makes are offered, too.
std::vector<RecorderTake> takesInFolder(const QString &path, bool withProgram);
