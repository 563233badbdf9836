#include "Lv2BundleScan.h"

#include "QWPlatform/foundation/processes/ChildProcesses.h"
#include "QWPlatform/linux/lv2/Lv2Reply.h"
#include "QWPlatform/linux/system/FrameworkFiles.h"

#include <QDebug>

#include <algorithm>
#include <csignal>
#include <cstring>

namespace platform::Lv2BundleScan
{

namespace
{
constexpr qsizetype mostAtOnce = 200; // their paths must fit into one command line

class Scan
{
public:
    Scan(ChildProcesses &processes, const QStringList &paths, const Lv2ReaderLimits &limits)
        : m_processes(processes)
        , m_paths(paths)
        , m_limits(limits)
    {
    }

    std::vector<std::optional<Plugins>> results()
    {
        for (qsizetype count = mostAtOnce; _done() < m_paths.size();)
            count = _readNext(count);
        return std::move(m_results);
    }

private:
    qsizetype _done() const { return static_cast<qsizetype>(m_results.size()); }

    /// Reads up to @p count bundles; how many are to be read next.
    qsizetype _readNext(qsizetype count)
    {
        const qsizetype first = _done();
        const ChildProcessResult run = _run(m_paths.mid(first, count));
        const auto answers = Lv2Reply::parse(run.output);
        if (!answers)
            return _giveUpAll();
        for (const Lv2BundleContents &contents : *answers)
            _take(contents);
        if (_done() == std::min(first + count, m_paths.size()))
            return mostAtOnce;
        const bool isToBlame = count == 1 || hasRunOutOfTime(run);
        if (isToBlame)
            _giveUpNext(run);
        return isToBlame ? mostAtOnce : 1; // by itself: what was read before it, or others, may have ended the reader
    }

    ChildProcessResult _run(const QStringList &paths)
    {
        ChildProcessRequest request;
        request.launchPath = FrameworkFiles::beside("Helpers/qw-lv2-reader");
        request.arguments = m_limits.arguments() + paths;
        request.captureOutput = true;
        return m_processes.run(request);
    }

    static bool hasRunOutOfTime(const ChildProcessResult &run)
    {
        return !run.exited && (run.status == SIGPROF || run.status == SIGALRM);
    }

    void _take(const Lv2BundleContents &contents)
    {
        if (_done() == m_paths.size())
            return;
        if (!contents.complaint.isEmpty())
            qWarning("LV2 bundle \"%s\": %s", qUtf8Printable(m_paths[_done()]), qUtf8Printable(contents.complaint));
        m_results.emplace_back(contents.plugins);
    }

    void _giveUpNext(const ChildProcessResult &run)
    {
        const QString end =
            run.exited ? "exit status " + QString::number(run.status) : QString::fromLocal8Bit(::strsignal(run.status));
        qWarning("The LV2 bundle \"%s\" cannot be read (%s). Its plug-ins are left out until it changes.",
                 qUtf8Printable(m_paths[_done()]), qUtf8Printable(end));
        m_results.emplace_back(Plugins());
    }

    qsizetype _giveUpAll()
    {
        qWarning("LV2 plug-ins that are new or changed cannot be read: \"%s\" does not run.",
                 qUtf8Printable(FrameworkFiles::beside("Helpers/qw-lv2-reader")));
        m_results.resize(static_cast<std::size_t>(m_paths.size()));
        return 0;
    }

    ChildProcesses &m_processes;
    const QStringList &m_paths;
    const Lv2ReaderLimits &m_limits;
    std::vector<std::optional<Plugins>> m_results; ///< Of the first paths.
};
} // namespace

std::vector<std::optional<Plugins>> read(ChildProcesses &processes, const QStringList &paths,
                                         const Lv2ReaderLimits &limits)
{
    return Scan(processes, paths, limits).results();
}

} // namespace platform::Lv2BundleScan
