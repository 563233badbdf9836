#pragma once

#include <QStringList>

namespace platform
{

/// What the reader of bundles may take; several times what a maker's bundle of 138 plug-ins does.
struct Lv2ReaderLimits
{
    int megabytes = 512;      ///< Of address space, in all.
    int workSeconds = 20;     ///< Of processor time, for one bundle.
    int patienceSeconds = 10; ///< Of standing still, over a pipe that stands for a file, say.

    /// As the reader's first arguments.
    QStringList arguments() const
    {
        return {QString::number(megabytes), QString::number(workSeconds), QString::number(patienceSeconds)};
    }

    static constexpr int argumentCount = 3;
};

} // namespace platform
