#pragma once

#include <QString>

namespace platform
{

/// Why a download failed, in a form that any thread can make: localized texts belong to the main thread.
struct DownloadFailure
{
    QString text;     ///< Key of a localized text, or a text of Qt's.
    QString argument; ///< Fills the text's "%@" or "%d"; "" for none.
    int errorNumber =
        0; ///< The system's, of the file or its disk; then there is no text, and the argument is its folder.
};

/// For the user. Main thread.
QString descriptionOf(const DownloadFailure &failure);

} // namespace platform
