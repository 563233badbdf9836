#include "Lv2Worker.h"

#include <utility>

namespace platform
{

Lv2Worker::Lv2Worker()
    : schedule{this, [](LV2_Worker_Schedule_Handle self, uint32_t size, const void *data) {
                   return static_cast<Lv2Worker *>(self)->_work(size, data);
               }}
{
}

void Lv2Worker::attach(LilvInstance *instance)
{
    m_handle = lilv_instance_get_handle(instance);
    m_interface =
        static_cast<const LV2_Worker_Interface *>(lilv_instance_get_extension_data(instance, LV2_WORKER__interface));
}

void Lv2Worker::endRun()
{
    if (!m_interface)
        return;
    for (const auto &response : std::exchange(m_responses, {}))
        if (m_interface->work_response)
            m_interface->work_response(m_handle, static_cast<uint32_t>(response.size()), response.data());
    if (m_interface->end_run)
        m_interface->end_run(m_handle);
}

LV2_Worker_Status Lv2Worker::_work(uint32_t size, const void *data)
{
    if (!m_interface || !m_interface->work)
        return LV2_WORKER_ERR_UNKNOWN; // asked before the first block, or by a plug-in that offers no work
    const auto respond = [](LV2_Worker_Respond_Handle self, uint32_t answerSize, const void *answer) {
        static_cast<Lv2Worker *>(self)->_respond(answerSize, answer);
        return LV2_WORKER_SUCCESS;
    };
    return m_interface->work(m_handle, respond, this, size, data);
}

void Lv2Worker::_respond(uint32_t size, const void *data)
{
    const auto *bytes = static_cast<const unsigned char *>(data);
    m_responses.emplace_back(bytes, bytes + (bytes ? size : 0));
}

} // namespace platform
