#include "RecorderSimulator.h"

#include "PropertyListText.h"

#include <QStandardPaths>

RecorderSimulator::RecorderSimulator(const QString &program, QObject *parent)
    : HttpServer([this](const HttpRequest &request) { return _reply(request); }, parent)
    , m_conversions(program)
{
    m_listWorker.setMaxThreadCount(1);
}

RecorderSimulator::~RecorderSimulator()
{
    m_listWorker.clear();
    m_listWorker.waitForDone();
}

QString RecorderSimulator::installedProgram()
{
    return QStandardPaths::findExecutable("ffmpeg");
}

void RecorderSimulator::setTakes(std::vector<RecorderTake> takes)
{
    m_takes = std::move(takes);
    m_listText.clear();
    m_takeByName.clear();
    for (size_t i = 0; i < m_takes.size(); ++i)
        m_takeByName.insert(m_takes[i].filename, i);
}

void RecorderSimulator::setList(const RecordingList &list)
{
    m_list = list;
    m_listText.clear();
}

void RecorderSimulator::clearFaults()
{
    m_listFaults.clear();
    m_downloadFaults.clear();
    m_list.faults.clear();
    m_listText.clear();
    m_leavesAt = 0;
}

void RecorderSimulator::leave()
{
    close();
    Q_EMIT left();
}

const RecorderFormat *RecorderSimulator::formatOffered(const RecorderTake &take, const QByteArray &code) const
{
    using enum RecorderFormat::Kind;
    const RecorderFormat *const format = RecorderFormat::withCode(code);
    if (!format || format->kind == Uncompressed)
        return format;
    const bool isOffered = !m_list.isBlue && (format->kind == Metadata || take.formats.contains(code));
    return isOffered ? format : nullptr;
}

void RecorderSimulator::convert(const RecorderTake &take, const RecorderFormat &format,
                                const TakeConversions::Done &done)
{
    m_conversions.convert(take, format, done);
}

HttpReply RecorderSimulator::_reply(const HttpRequest &request)
{
    if (request.method != "GET" && request.method != "HEAD")
        return HttpReply::failure(405);
    if (request.path == u"/list.plist")
        return _listReply(request);
    return request.path == u"/download" ? _downloadReply(request) : HttpReply::failure(404);
}

HttpReply RecorderSimulator::_listReply(const HttpRequest &request)
{
    if (!m_listText.isEmpty())
        return _listOf(m_listText, request);
    if (m_list.isEndless() && !m_takes.empty())
        return _withListFaults(_endlessList(), request);
    HttpReply reply;
    reply.later = [this, request](const HttpReply::Answer &answer) { _writeList(request, answer); };
    return reply;
}

HttpReply RecorderSimulator::_endlessList() const
{
    HttpReply reply;
    reply.body = m_list.endless(m_takes);
    return reply;
}

/// A large one takes a while, during which others are served.
void RecorderSimulator::_writeList(const HttpRequest &request, const HttpReply::Answer &answer)
{
    m_listWorker.start([this, list = m_list, takes = m_takes, request, answer] {
        const QByteArray text = list.text(takes);
        QMetaObject::invokeMethod(
            this,
            [this, text, request, answer] {
                m_listText = text;
                answer(_listOf(text, request));
            },
            Qt::QueuedConnection);
    });
}

HttpReply RecorderSimulator::_listOf(const QByteArray &text, const HttpRequest &request) const
{
    return _withListFaults(HttpReply::text(text, m_list.isBinary ? "application/x-plist" : "text/xml; charset=utf-8"),
                           request);
}

HttpReply RecorderSimulator::_withListFaults(HttpReply reply, const HttpRequest &request) const
{
    for (const AnswerFault &fault : m_listFaults)
        reply = fault.appliedTo(reply, request);
    return reply;
}

HttpReply RecorderSimulator::_downloadReply(const HttpRequest &request)
{
    if (request.method == "GET")
        ++m_downloads;
    const RecorderTake *const take = _takeNamed(request.query.queryItemValue("filename", QUrl::FullyDecoded));
    const QByteArray code = request.query.queryItemValue("format", QUrl::FullyDecoded).toUtf8();
    const RecorderFormat *const format = take ? formatOffered(*take, code) : nullptr;
    if (!format)
        return HttpReply::failure(404);
    if (format->kind != RecorderFormat::Kind::Metadata)
        return _soundReply(*take, *format, request);
    const QByteArray text = code == "metaXML" ? PropertyListText::xml(take->listEntry()) : take->text();
    return _afflicted(HttpReply::text(text, format->contentType), request, m_downloads);
}

HttpReply RecorderSimulator::_soundReply(const RecorderTake &take, const RecorderFormat &format,
                                         const HttpRequest &request)
{
    HttpReply reply;
    reply.later = [this, take, &format, request, number = m_downloads](const HttpReply::Answer &answer) {
        convert(take, format, [this, &format, request, number, answer](const QString &path) {
            HttpReply sound = path.isEmpty() ? HttpReply::failure(500) : HttpReply::file(path);
            sound.contentType = format.contentType;
            answer(_afflicted(sound, request, number));
        });
    };
    return reply;
}

HttpReply RecorderSimulator::_afflicted(const HttpReply &good, const HttpRequest &request, int download)
{
    HttpReply reply = good;
    for (const auto &[fault, only] : m_downloadFaults)
        if (only == 0 || only == download)
            reply = fault.appliedTo(reply, request);
    if (download == m_leavesAt) {
        reply.cutAfter = reply.body.size() / 2;
        reply.stayAfterPieces = true;
        reply.sent = [this] { QMetaObject::invokeMethod(this, &RecorderSimulator::leave, Qt::QueuedConnection); };
    }
    return reply;
}

const RecorderTake *RecorderSimulator::_takeNamed(const QString &filename) const
{
    const auto found = m_takeByName.constFind(filename);
    return found == m_takeByName.constEnd() ? nullptr : &m_takes[*found];
}
