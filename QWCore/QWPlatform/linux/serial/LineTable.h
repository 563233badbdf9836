#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace platform
{

/// Gives open files numbers that are never used again, and closes a file only when nobody is using it. Any thread; uses
/// take no lock.
class QWPLATFORM_TEST_EXPORT LineTable
{
public:
    static constexpr int capacity = 64;

    /// Keeps a file open for its life.
    class QWPLATFORM_TEST_EXPORT Use
    {
    public:
        Use(LineTable &table, int number);
        ~Use();
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

        /// -1 when the number names no open file.
        int file() const { return m_file; }

    private:
        LineTable &m_table;
        int m_number;
        int m_file;
    };

    LineTable() = default;
    LineTable(const LineTable &) = delete;
    LineTable &operator=(const LineTable &) = delete;

    /// Closes what is open.
    ~LineTable();

    /// The number of @p file, which is now the table's; 0 when the table is full.
    int add(int file);

    /// From now on the number names nothing. The file is closed at once, or by the last of its users.
    void close(int number);

private:
    /// number << 32 | closing << 31 | users; 0: free.
    using State = std::uint64_t;

    struct Slot
    {
        std::atomic<State> state{0};
        int file = -1; ///< Written while the state is 0 only.
    };

    Slot &_slot(int number) { return m_slots[static_cast<unsigned>(number) % capacity]; }
    int _enter(int number);
    void _leave(int number);
    void _release(Slot &slot);

    std::array<Slot, capacity> m_slots;
    std::mutex m_adding; ///< Guards m_round and the choice of a free slot.
    int m_round = 0;
};

} // namespace platform
