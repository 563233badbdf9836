#pragma once

#include <simulators/recorder/takes/RecorderFormat.h>
#include <simulators/recorder/takes/RecorderTake.h>

#include <functional>

/// Makes one file of one take. Any thread; blocks for as long as it takes.
class TakeConverter
{
public:
    /// @p program: path of ffmpeg, "" where there is none. @p goOn is asked now and then; once it says no, the work
    /// ends without a file.
    TakeConverter(QString program, std::function<bool()> goOn);

    /// Writes @p take in @p format to @p target, which appears when it is whole. False when that cannot be done.
    bool convert(const RecorderTake &take, const RecorderFormat &format, const QString &target) const;

private:
    bool _write(const RecorderTake &take, const RecorderFormat &format, const QString &target) const;
    bool _writeByProgram(const RecorderTake &take, const RecorderFormat &format, const QString &target) const;
    bool _writeWave(const RecorderTake &take, const QString &target) const;

    QString m_program;
    std::function<bool()> m_goOn;
};
