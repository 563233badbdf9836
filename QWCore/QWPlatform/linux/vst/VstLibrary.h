#pragma once

#include "VstInterface.h"

#include <QString>

namespace platform
{

/// A loaded VST 2 library.
class VstLibrary
{
public:
    /// Loads the library at @p path (a real path); error() tells whether it is one.
    explicit VstLibrary(const QString &path);

    /// "" when the library can make effects.
    const QString &error() const { return m_error; }

    /// A new effect, not yet opened; null when the plug-in refuses.
    vst::Effect *makeEffect() const;

private:
    vst::EntryFunction m_entry = nullptr;
    QString m_error;
};

} // namespace platform
