#pragma once

#include <cstdio>
#include <cstdlib>

namespace qir::fuzz {

/// Ends the program with a message where an input shows something that must not be.
inline void require(bool holds, const char *what) {
    if (holds)
        return;
    std::fprintf(stderr, "this does not hold: %s\n", what);
    std::abort();
}

} // namespace qir::fuzz
