#include "LineTable.h"

#include <unistd.h>

namespace platform
{

namespace
{
constexpr std::uint64_t closing = 1u << 31;

constexpr std::uint64_t open(int number)
{
    return static_cast<std::uint64_t>(number) << 32;
}

constexpr bool isOpen(std::uint64_t state, int number)
{
    return number != 0 && state >> 32 == static_cast<std::uint32_t>(number) && !(state & closing);
}
} // namespace

LineTable::Use::Use(LineTable &table, int number)
    : m_table(table)
    , m_number(number)
    , m_file(table._enter(number))
{
}

LineTable::Use::~Use()
{
    if (m_file >= 0)
        m_table._leave(m_number);
}

LineTable::~LineTable()
{
    for (Slot &slot : m_slots)
        if (slot.state != 0)
            ::close(slot.file);
}

int LineTable::add(int file)
{
    const std::lock_guard guard(m_adding);
    ++m_round;
    for (int i = 0; i < capacity; ++i) {
        Slot &slot = m_slots[static_cast<std::size_t>(i)];
        if (slot.state.load(std::memory_order_acquire) != 0)
            continue;
        const int number = m_round * capacity + i;
        slot.file = file;
        slot.state.store(open(number), std::memory_order_release);
        return number;
    }
    return 0;
}

void LineTable::close(int number)
{
    Slot &slot = _slot(number);
    State state = slot.state.load(std::memory_order_relaxed);
    do {
        if (!isOpen(state, number))
            return;
    } while (!slot.state.compare_exchange_weak(state, state | closing, std::memory_order_acq_rel));
    if (state == open(number))
        _release(slot);
}

int LineTable::_enter(int number)
{
    Slot &slot = _slot(number);
    State state = slot.state.load(std::memory_order_relaxed);
    do {
        if (!isOpen(state, number))
            return -1;
    } while (!slot.state.compare_exchange_weak(state, state + 1, std::memory_order_acquire));
    return slot.file;
}

void LineTable::_leave(int number)
{
    Slot &slot = _slot(number);
    if (slot.state.fetch_sub(1, std::memory_order_acq_rel) == (open(number) | closing | 1))
        _release(slot);
}

void LineTable::_release(Slot &slot)
{
    ::close(slot.file);
    slot.state.store(0, std::memory_order_release);
}

} // namespace platform
