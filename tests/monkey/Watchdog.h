#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <pthread.h>

namespace qir::test {

/// Notices when the thread that made it does not come back to its event loop: after `computing` of that thread's own
/// processor time, so that a busy machine is no reason, or after `waiting` of the clock on the wall for one that waits
/// for something that never comes. It then prints the thread's stack and ends the process with exitCode.
class Watchdog {
public:
    static constexpr int exitCode = 3;

    Watchdog(std::chrono::milliseconds computing, std::chrono::milliseconds waiting);
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    /// The thread is alive. To be called by it, from its event loop.
    void beat();

private:
    void watch();

    const std::chrono::nanoseconds m_computing;
    const std::chrono::nanoseconds m_waiting;
    const pthread_t m_watched = pthread_self();
    std::atomic<std::int64_t> m_computedAtBeat{0};
    std::atomic<std::int64_t> m_clockAtBeat{0};
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_ended = false; // guarded by m_mutex
    std::thread m_thread;
};

} // namespace qir::test
