#include "PluginThreads.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr auto restPollTime = std::chrono::milliseconds(5);
constexpr char sleeping = 'S';

/// The state stands behind the name, which may hold anything.
char stateOf(const std::filesystem::path &thread)
{
    std::ifstream file(thread / "stat");
    std::string text;
    std::getline(file, text, '\0');
    const auto end = text.rfind(')');
    return end == std::string::npos || end + 2 >= text.size() ? '\0' : text[end + 2];
}
} // namespace

PluginThreads::PluginThreads()
    : m_others(_statesOfAll())
{
}

void PluginThreads::awaitRest(std::chrono::milliseconds calm, std::chrono::milliseconds longest,
                              const std::function<void()> &whileWaiting) const
{
    const auto start = Clock::now();
    auto restingSince = start;
    States before = _states();
    for (States now = before; !now.empty() && Clock::now() - start < longest; now = _states()) {
        const bool isResting =
            std::all_of(now.begin(), now.end(), [](const auto &thread) { return thread.second == sleeping; });
        if (!isResting || now != before)
            restingSince = Clock::now();
        if (Clock::now() - restingSince >= calm)
            return;
        before = now;
        whileWaiting();
        std::this_thread::sleep_for(restPollTime);
    }
}

PluginThreads::States PluginThreads::_statesOfAll()
{
    States states;
    std::error_code ignored;
    // Step by step: a thread that ends meanwhile is no reason for an exception.
    for (std::filesystem::directory_iterator thread("/proc/self/task", ignored), end; thread != end;
         thread.increment(ignored))
        states.emplace(std::atoi(thread->path().filename().c_str()), stateOf(thread->path()));
    return states;
}

PluginThreads::States PluginThreads::_states() const
{
    States states = _statesOfAll();
    std::erase_if(states, [this](const auto &thread) { return m_others.contains(thread.first); });
    return states;
}
