#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace qir::test {

/// A sequence of steps that still fails, with as many steps left out as `mostRuns` attempts allow: halves first, then
/// quarters, down to single steps. `fails` runs a sequence; steps must make sense whatever was left out before them.
template<class Step>
std::vector<Step> shortened(std::vector<Step> steps, const std::function<bool(const std::vector<Step> &)> &fails,
                            int mostRuns) {
    int runs = 0;
    std::size_t chunk = std::max<std::size_t>(1, (steps.size() + 1) / 2);
    for (bool shorter = true; runs < mostRuns && (chunk > 1 || shorter); chunk = std::max<std::size_t>(1, chunk / 2)) {
        shorter = false;
        for (std::size_t start = 0; start < steps.size() && runs < mostRuns; ++runs) {
            std::vector<Step> fewer = steps;
            const auto from = fewer.begin() + static_cast<std::ptrdiff_t>(start);
            fewer.erase(from, from + static_cast<std::ptrdiff_t>(std::min(chunk, steps.size() - start)));
            if (fails(fewer)) {
                steps = std::move(fewer);
                shorter = true;
            } else {
                start += chunk;
            }
        }
        // Single steps are tried until none of them can be left out.
        if (chunk == 1 && !shorter)
            break;
    }
    return steps;
}

} // namespace qir::test
