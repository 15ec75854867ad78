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
std::vector<Step> shortenedSteps(std::vector<Step> steps, const std::function<bool(const std::vector<Step> &)> &fails,
                                 int mostRuns) {
    int runs = 0;
    for (std::size_t chunk = (steps.size() + 1) / 2; chunk >= 1;) {
        bool shorter = false;
        // From the end: most often nothing behind the failing step matters.
        for (std::size_t end = steps.size(); end > 0 && runs < mostRuns; ++runs) {
            const std::size_t start = end - std::min(chunk, end);
            std::vector<Step> fewer = steps;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(start),
                        fewer.begin() + static_cast<std::ptrdiff_t>(end));
            if (fails(fewer)) {
                steps = std::move(fewer);
                shorter = true;
            }
            end = start;
        }
        // Single steps are tried until none of them can be left out.
        if (runs >= mostRuns || (chunk == 1 && !shorter))
            break;
        chunk = std::max<std::size_t>(1, chunk / 2);
    }
    return steps;
}

} // namespace qir::test
