// Work that whoever comes first does, in any thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>

namespace tesk {

/// Pieces of work by numbers, each to be done once.
class CSettling {
public:
    explicit CSettling(std::size_t count) : m_isDone(std::make_unique<std::atomic<bool>[]>(count)) {}

    /// Calls `work()` unless that has been done for `number`. When it returns, it has been done.
    template <class TWork>
    void Once(std::size_t number, const TWork &work)
    {
        if (m_isDone[number].load(std::memory_order_acquire))
            return;
        const std::lock_guard lock(m_working);
        if (m_isDone[number].load(std::memory_order_relaxed))
            return;
        work();
        m_isDone[number].store(true, std::memory_order_release);
    }

private:
    std::mutex m_working;
    std::unique_ptr<std::atomic<bool>[]> m_isDone;
};

}  // namespace tesk
