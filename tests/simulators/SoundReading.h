#pragma once

#include <QFile>
#include <QProcess>
#include <QTest>

#include <memory>
#include <sndfile.h>
#include <vector>

/// What libsndfile reads from a file.
struct SoundReading
{
    bool isSound = false;
    int rate = 0;
    int channels = 0;
    qint64 frames = 0;
    int format = 0;           ///< libsndfile's.
    std::vector<int> samples; ///< Interleaved, 32 bits each.

    double length() const { return static_cast<double>(frames) / rate; }

    static SoundReading of(const QString &path)
    {
        SF_INFO info{};
        const std::unique_ptr<SNDFILE, int (*)(SNDFILE *)> file(
            sf_open(QFile::encodeName(path).constData(), SFM_READ, &info), sf_close);
        SoundReading sound;
        if (!file)
            return sound;
        sound = {true, info.samplerate, info.channels, info.frames, info.format, {}};
        sound.samples.resize(static_cast<size_t>(info.frames * info.channels));
        sound.samples.resize(
            static_cast<size_t>(sf_readf_int(file.get(), sound.samples.data(), info.frames) * info.channels));
        return sound;
    }

    /// What ffmpeg decodes @p path to, and what ffprobe tells of it.
    static SoundReading byProgram(const QString &path)
    {
        const QByteArray told =
            output("ffprobe", {"-v", "error", "-of", "csv=p=0", "-show_entries", "stream=sample_rate,channels", path});
        const QByteArray decoded = output("ffmpeg", {"-v", "error", "-i", path, "-f", "s32le", "-"});
        const QList<QByteArray> values = told.trimmed().split(',');
        SoundReading sound;
        sound.isSound = values.size() == 2;
        sound.rate = values.value(0).toInt();
        sound.channels = values.value(1).toInt();
        const auto *const first = reinterpret_cast<const int *>(decoded.constData());
        sound.samples.assign(first, first + decoded.size() / qsizetype(sizeof(int)));
        sound.frames = sound.channels > 0 ? static_cast<qint64>(sound.samples.size()) / sound.channels : 0;
        return sound;
    }

private:
    static QByteArray output(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments, QIODevice::ReadOnly);
        if (!process.waitForFinished(90'000) || process.exitCode() != 0)
            qFatal("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
        return process.readAllStandardOutput();
    }
};
