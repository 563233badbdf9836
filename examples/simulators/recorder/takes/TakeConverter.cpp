#include "TakeConverter.h"

#include <simulators/recorder/takes/MadeUpTakes.h>
#include <simulators/recorder/takes/SoundConversion.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <sndfile.h>
#include <sys/prctl.h>

namespace
{
QStringList encoderArguments(const QByteArray &code)
{
    if (code == "appleLossless")
        return {"-c:a", "alac"};
    if (code == "podcast")
        return {"-c:a", "aac", "-b:a", "96k", "-metadata", "genre=Podcast"};
    return {"-c:a", "aac", "-b:a", "192k"};
}

QStringList programArguments(const QString &source, const RecorderTake &take, const QByteArray &code,
                             const QString &target)
{
    const QStringList input{"-nostdin", "-loglevel", "error", "-y", "-i", source, "-map_metadata", "-1"};
    const QStringList output{"-metadata", "title=" + take.title, "-fflags", "+bitexact", "-flags:a", "+bitexact",
                             "-movflags", "+faststart",          "-f",      "ipod",      target};
    return input + encoderArguments(code) + output;
}

bool run(const QString &program, const QStringList &arguments, const std::function<bool()> &goOn)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(program, arguments, QIODevice::ReadOnly);
    while (!process.waitForFinished(50)) // sooner when it ends
        if (process.state() == QProcess::NotRunning || !goOn())
            return false; // what still runs is killed with its QProcess
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}
} // namespace

TakeConverter::TakeConverter(QString program, std::function<bool()> goOn)
    : m_program(std::move(program))
    , m_goOn(std::move(goOn))
{
}

bool TakeConverter::convert(const RecorderTake &take, const RecorderFormat &format, const QString &target) const
{
    const QString partial = target + ".partial";
    if (_write(take, format, partial) && QFile::rename(partial, target))
        return true;
    QFile::remove(partial);
    return false;
}

bool TakeConverter::_write(const RecorderTake &take, const RecorderFormat &format, const QString &target) const
{
    if (format.container == 0)
        return _writeByProgram(take, format, target);
    if (!take.soundFile.isEmpty())
        return SoundConversion::convert(take.soundFile, target, format.container, m_goOn);
    if (format.container == SF_FORMAT_WAV)
        return _writeWave(take, target);
    const QTemporaryDir folder(QFileInfo(target).path() + "/XXXXXX");
    const QString wave = folder.filePath("sound.wav");
    return _writeWave(take, wave) && SoundConversion::convert(wave, target, format.container, m_goOn);
}

bool TakeConverter::_writeByProgram(const RecorderTake &take, const RecorderFormat &format, const QString &target) const
{
    const QTemporaryDir folder(QFileInfo(target).path() + "/XXXXXX");
    const QString wave = folder.filePath("sound.wav");
    return !m_program.isEmpty() && _writeWave(take, wave) &&
           run(m_program, programArguments(wave, take, format.code, target), m_goOn);
}

bool TakeConverter::_writeWave(const RecorderTake &take, const QString &target) const
{
    return take.soundFile.isEmpty() ? MadeUpTakes::writeSound(take.madeUp, take.channels, target, m_goOn)
                                    : SoundConversion::convert(take.soundFile, target, SF_FORMAT_WAV, m_goOn);
}
