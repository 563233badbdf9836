#pragma once

#include <chrono>
#include <functional>
#include <map>

/// The threads that a plug-in has begun in this process: all that were not there when this was made.
class PluginThreads
{
public:
    PluginThreads();

    /// Waits until they have rested for @p calm, at most @p longest, and calls @p whileWaiting meanwhile. A plug-in
    /// that is closed while a thread of its is only about to begin often ends in an abort. At once without threads.
    void awaitRest(std::chrono::milliseconds calm, std::chrono::milliseconds longest,
                   const std::function<void()> &whileWaiting) const;

private:
    using States = std::map<int, char>; ///< By thread; as the kernel tells them.

    static States _statesOfAll();
    States _states() const;

    const States m_others;
};
