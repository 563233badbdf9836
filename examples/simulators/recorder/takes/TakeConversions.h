#pragma once

#include <simulators/recorder/takes/RecorderFormat.h>
#include <simulators/recorder/takes/RecorderTake.h>

#include <QObject>
#include <QTemporaryDir>
#include <QThreadPool>

#include <atomic>
#include <functional>

/// Makes files of takes in the background and keeps the newest in a temporary folder, which goes with it. One thread;
/// its event loop gets the results.
class TakeConversions : public QObject
{
public:
    /// @p program: path of ffmpeg, "" where there is none. @p most: bytes that are kept; what was asked longest ago
    /// goes first.
    explicit TakeConversions(QString program, qint64 most = qint64(4) << 30);
    ~TakeConversions() override;

    /// Called with the path of the file, "" when it could not be made; later, also when the file is there.
    using Done = std::function<void(const QString &path)>;

    /// Asked for the same twice, makes it once. Of one name there is one take only.
    void convert(const RecorderTake &take, const RecorderFormat &format, const Done &done);

    const QTemporaryDir &folder() const { return m_folder; }

private:
    void _begin(const RecorderTake &take, const RecorderFormat &format, const QString &path);
    void _finish(const QString &path, bool succeeded);
    void _dropOldest();

    QString m_program;
    qint64 m_most;
    QTemporaryDir m_folder;
    QHash<QString, QList<Done>> m_waiting; ///< By the path of what is being made.
    QStringList m_kept;                    ///< Paths; what was asked last comes last.
    std::atomic<bool> m_isEnding = false;
    QThreadPool m_workers; ///< The last one: its threads use what is above.
};
