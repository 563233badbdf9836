#pragma once

#include <lilv/lilv.h>
#include <lv2/worker/worker.h>
#include <vector>

namespace platform
{

/// Does a plug-in's deferred work at once, as a host that works off line may, and hands the answers over after the
/// block. One thread.
class Lv2Worker
{
public:
    Lv2Worker();
    Lv2Worker(const Lv2Worker &) = delete;
    Lv2Worker &operator=(const Lv2Worker &) = delete;

    /// To be called before the first block; @p instance outlives the calls below.
    void attach(LilvInstance *instance);

    /// After each block.
    void endRun();

    LV2_Worker_Schedule schedule; ///< For the feature of this name.

private:
    LV2_Worker_Status _work(uint32_t size, const void *data);
    void _respond(uint32_t size, const void *data);

    LV2_Handle m_handle = nullptr;
    const LV2_Worker_Interface *m_interface = nullptr; ///< Null: the plug-in has none.
    std::vector<std::vector<unsigned char>> m_responses;
};

} // namespace platform
