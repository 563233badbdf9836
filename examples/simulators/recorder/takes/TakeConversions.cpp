#include "TakeConversions.h"

#include "TakeConverter.h"

#include <QFileInfo>

#include <numeric>

TakeConversions::TakeConversions(QString program, qint64 most)
    : m_program(std::move(program))
    , m_most(most)
{
}

TakeConversions::~TakeConversions()
{
    m_isEnding = true;
    m_workers.clear();
    m_workers.waitForDone();
}

void TakeConversions::convert(const RecorderTake &take, const RecorderFormat &format, const Done &done)
{
    const QString path = m_folder.filePath(take.filename + '-' + format.code + '.' + format.extension);
    QList<Done> &waiting = m_waiting[path];
    waiting += done;
    if (waiting.size() > 1)
        return;
    if (m_kept.contains(path))
        QMetaObject::invokeMethod(
            this, [this, path] { _finish(path, true); }, Qt::QueuedConnection);
    else
        _begin(take, format, path);
}

void TakeConversions::_begin(const RecorderTake &take, const RecorderFormat &format, const QString &path)
{
    m_workers.start([this, take, &format, path] {
        const TakeConverter converter(m_program, [this] { return !m_isEnding; });
        const bool succeeded = converter.convert(take, format, path);
        QMetaObject::invokeMethod(
            this, [this, path, succeeded] { _finish(path, succeeded); }, Qt::QueuedConnection);
    });
}

void TakeConversions::_finish(const QString &path, bool succeeded)
{
    m_kept.removeOne(path);
    if (succeeded)
        m_kept += path;
    for (const QList<Done> waiting = m_waiting.take(path); const Done &done : waiting)
        done(succeeded ? path : QString());
    _dropOldest();
}

/// What is being sent stays readable, since it is open.
void TakeConversions::_dropOldest()
{
    const auto add = [](qint64 sum, const QString &path) { return sum + QFileInfo(path).size(); };
    qint64 size = std::accumulate(m_kept.begin(), m_kept.end(), qint64(0), add);
    while (size > m_most && m_kept.size() > 1) {
        const QString oldest = m_kept.takeFirst();
        size -= QFileInfo(oldest).size();
        QFile::remove(oldest);
    }
}
