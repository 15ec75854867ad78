#include "tests/monkey/Watchdog.h"

#include <csignal>
#include <cstdio>
#include <ctime>

#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace qir::test {

namespace {

constexpr auto lookEvery = std::chrono::milliseconds(50);

std::int64_t nanoseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Runs on the watched thread, so that the stack printed is the one that hangs.
void printStackAndEnd(int) {
    constexpr char text[] = "watchdog: the window was deaf for too long\n";
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text, sizeof text - 1);
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_print_stack_trace();
#endif
    _exit(Watchdog::exitCode);
}

} // namespace

Watchdog::Watchdog(std::chrono::milliseconds computing, std::chrono::milliseconds waiting)
    : m_computing(computing)
    , m_waiting(waiting) {
    std::signal(SIGUSR2, printStackAndEnd);
    beat();
    m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_end.notify_one();
    m_thread.join();
}

void Watchdog::beat() {
    m_clockAtBeat = nanoseconds(CLOCK_MONOTONIC);
    m_computedAtBeat = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

void Watchdog::watch() {
    clockid_t computed{};
    if (pthread_getcpuclockid(m_watched, &computed) != 0)
        return;
    std::unique_lock lock(m_mutex);
    while (!m_end.wait_for(lock, lookEvery, [this] { return m_ended; })) {
        if (nanoseconds(computed) - m_computedAtBeat > m_computing.count() ||
            nanoseconds(CLOCK_MONOTONIC) - m_clockAtBeat > m_waiting.count()) {
            pthread_kill(m_watched, SIGUSR2);
            return;
        }
    }
}

} // namespace qir::test
