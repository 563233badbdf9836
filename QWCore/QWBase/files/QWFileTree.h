#pragma once

#include <filesystem>
#include <system_error>

/// Work on whole folder trees by real paths; links are never followed. Any thread.
namespace qw
{

/// Removes a file, a link, or a folder with all it holds.
std::error_code removeTree(const std::filesystem::path &path);

/// Removes all that the folder holds, going on past what cannot be removed; the first failure is returned.
std::error_code emptyFolder(const std::filesystem::path &folder);

/// Gives the owner back what he lacks to read, change and remove the folder and all it holds, where he may.
void makeTreeAccessible(const std::filesystem::path &folder);

/// Copies a file, a link, or a folder with all it holds, with permissions and modification dates. Nothing may be at
/// @p to; what was made before a failure stays.
std::error_code copyTree(const std::filesystem::path &from, const std::filesystem::path &to);

} // namespace qw
