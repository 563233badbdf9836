#pragma once

namespace qw
{

/// What tells the plug-in formats apart, as data; texts are keys of the host's string table.
struct PluginFormat
{
    const char *databasePath;
    const char *validatedInfoPath;
    const char *graylist;     ///< Resource of type "plist".
    const char *validator;    ///< Name of the program.
    const char *locatingText; ///< Shown on the splash screen while the scan looks around.
    const char *graylistText; ///< "%@": the plug-in.
    const char *graylistQuestion;
    const char *failureText; ///< "%@": the plug-in.
};

constexpr PluginFormat audioUnitFormat{
    .databasePath = "~/Library/Application Support/Quorwell/au_db.plist",
    .validatedInfoPath = "~/Library/Application Support/Quorwell/validated_au.plist",
    .graylist = "graylist_au",
    .validator = "AU Validator",
    .locatingText = "Locating Audio Units",
    .graylistText = "The '%@' Audio Unit has been known to cause problems with Quorwell Engineering products.",
    .graylistQuestion =
        "Would you like to ignore this Audio Unit or would you like to continue to validate it and use it?",
    .failureText = "The '%@' Audio Unit failed to validate and will be ignored.",
};

constexpr PluginFormat vstFormat{
    .databasePath = "~/Library/Application Support/Quorwell/vst_db.plist",
    .validatedInfoPath = "~/Library/Application Support/Quorwell/validated_vst.plist",
    .graylist = "graylist_vst",
    .validator = "VST Validator",
    .locatingText = "Locating VST Plug-ins",
    .graylistText = "The '%@' VST has been known to cause problems with Quorwell Engineering products.",
    .graylistQuestion = "Would you like to ignore this VST or would you like to continue to validate it and use it?",
    .failureText = "The '%@' VST failed to validate and will be ignored.",
};

} // namespace qw
