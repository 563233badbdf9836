#pragma once

#include "AnswerFault.h"
#include "RecordingList.h"

#include <simulators/HttpServer.h>
#include <simulators/recorder/takes/RecorderTake.h>
#include <simulators/recorder/takes/TakeConversions.h>

#include <QThreadPool>

#include <vector>

/// A recorder on the network, as far as a browser of recorders asks it:
///   /list.plist                                  the list of its takes
///   /download?filename=<name>&format=<code>      a take, converted when it is asked for
/// An unknown name or code, and a format that the take is not offered in, are answered with status 404. What it is set
/// to counts for requests that come later. Not announced: see RecorderPresence.
class RecorderSimulator : public HttpServer
{
    Q_OBJECT

public:
    /// @p program: path of ffmpeg; "" where there is none, and takes should not list what it makes.
    explicit RecorderSimulator(const QString &program = installedProgram(), QObject *parent = nullptr);
    ~RecorderSimulator() override;

    /// Path of the installed ffmpeg, or "".
    static QString installedProgram();

    /// Their file names are different.
    void setTakes(std::vector<RecorderTake> takes);
    const std::vector<RecorderTake> &takes() const { return m_takes; }

    /// How the list is written, and of which edition the recorder is.
    void setList(const RecordingList &list);
    const RecordingList &list() const { return m_list; }

    void addListFault(const AnswerFault &fault) { m_listFaults.push_back(fault); }

    /// @p download: the only one that has it, from 1 on; 0: all.
    void addDownloadFault(const AnswerFault &fault, int download = 0)
    {
        m_downloadFaults.emplace_back(fault, download);
    }

    void clearFaults();

    /// Goes away in the middle of download @p number, from 1 on; 0: never.
    void setLeavesAtDownload(int number) { m_leavesAt = number; }

    /// Ends all connections and takes no more.
    void leave();

    /// How many downloads were asked for.
    int downloads() const { return m_downloads; }

    /// Null where a request for it is answered with status 404.
    const RecorderFormat *formatOffered(const RecorderTake &take, const QByteArray &code) const;

    /// What a download of @p take in @p format gets, see TakeConversions::convert(). Not for metadata.
    void convert(const RecorderTake &take, const RecorderFormat &format, const TakeConversions::Done &done);

Q_SIGNALS:
    void left();

private:
    HttpReply _reply(const HttpRequest &request);
    HttpReply _listReply(const HttpRequest &request);
    HttpReply _listOf(const QByteArray &text, const HttpRequest &request) const;
    HttpReply _withListFaults(HttpReply reply, const HttpRequest &request) const;
    HttpReply _endlessList() const;
    void _writeList(const HttpRequest &request, const HttpReply::Answer &answer);
    HttpReply _downloadReply(const HttpRequest &request);
    HttpReply _soundReply(const RecorderTake &take, const RecorderFormat &format, const HttpRequest &request);
    HttpReply _afflicted(const HttpReply &good, const HttpRequest &request, int download);
    const RecorderTake *_takeNamed(const QString &filename) const;

    std::vector<RecorderTake> m_takes;
    QHash<QString, size_t> m_takeByName;
    RecordingList m_list;
    std::vector<AnswerFault> m_listFaults;
    std::vector<std::pair<AnswerFault, int>> m_downloadFaults;
    int m_leavesAt = 0;
    int m_downloads = 0;
    QByteArray m_listText; ///< Once it was written.
    TakeConversions m_conversions;
    QThreadPool m_listWorker; ///< The last one: it uses what is above.
};
