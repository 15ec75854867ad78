#include "base/columns/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace qir {

void inParallel(std::size_t count, const std::function<void(std::size_t index)> &work, std::size_t mostAtOnce) {
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
        const std::size_t useful = std::min({count, mostAtOnce, std::size_t{std::thread::hardware_concurrency()}});
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

void forEachColumn(std::size_t columns, std::size_t records, const std::function<void(std::size_t column)> &work) {
    constexpr std::size_t longColumn = 65'536;
    constexpr std::size_t mostColumnsAtOnce = 4;
    if (records >= longColumn) {
        inParallel(columns, work, mostColumnsAtOnce);
        return;
    }
    for (std::size_t column = 0; column < columns; ++column)
        work(column);
}

} // namespace qir
