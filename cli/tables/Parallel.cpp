#include "cli/tables/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace qir {

void inParallel(std::size_t count, const std::function<void(std::size_t index)> &work) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::exception_ptr> errors(count);
    const auto share = [&]() noexcept {
        for (std::size_t index = next++; index < count; index = next++) {
            try {
                work(index);
            } catch (...) {
                errors[index] = std::current_exception();
            }
        }
    };
    {
        const std::size_t useful = std::min<std::size_t>(count, std::thread::hardware_concurrency());
        std::vector<std::jthread> threads;
        try {
            while (threads.size() + 1 < useful)
                threads.emplace_back(share);
        } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): those that there are do it
        }
        share();
    }
    for (const std::exception_ptr &error : errors)
        if (error)
            std::rethrow_exception(error);
}

} // namespace qir
