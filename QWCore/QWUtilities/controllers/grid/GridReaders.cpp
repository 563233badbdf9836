#include "GridReaders.h"

#include "GridReader.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>

namespace qw
{

namespace
{
using namespace std::chrono_literals;

constexpr auto pollInterval = 1ms;
} // namespace

GridReaders::GridReaders() = default;
GridReaders::~GridReaders() = default;

void GridReaders::start(std::function<void(GridReader &)> body)
{
    const std::lock_guard guard(m_mutex);
    std::erase_if(m_formerReaders, [](const auto &reader) { return reader->hasFinished(); });
    if (m_readThread)
        m_formerReaders.push_back(std::move(m_readThread));
    m_readThread = std::make_unique<GridReader>(std::move(body));
}

void GridReaders::cancel()
{
    const std::lock_guard guard(m_mutex);
    if (!m_readThread)
        return;
    m_readThread->cancel();
    m_formerReaders.push_back(std::move(m_readThread));
}

void GridReaders::end()
{
    cancel();
    std::vector<std::unique_ptr<GridReader>> readers;
    {
        const std::lock_guard guard(m_mutex);
        readers.swap(m_formerReaders);
    }
    for (const auto &reader : readers)
        reader->end();
    for (const auto &reader : readers)
        while (!reader->waitForEnd(pollInterval))
            QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

} // namespace qw
