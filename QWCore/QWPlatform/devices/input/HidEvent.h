#pragma once

#include <QtGlobal>

#include <memory>

namespace platform
{

/// What an element of a HID device reported.
struct HidEvent
{
    quint32 type = 0;          ///< Kind of element; nothing reads it.
    quint32 elementCookie = 0; ///< Which element.
    qint32 value = 0;
    quint64 timeStamp = 0;             ///< Microseconds on the device's clock.
    quint32 longValueSize = 0;         ///< Bytes of longValue; 0 when value says it all.
    std::shared_ptr<void> longValue{}; ///< Freed with the last copy of the event; null for none.
};

} // namespace platform
