#pragma once

#include <cstdlib>

namespace qir {

/// How often a test does what it does: few times among the others, as often as an environment variable says in the long
/// form.
inline int countFrom(const char *variable, int quick) {
    const char *text = std::getenv(variable);
    const int count = text ? std::atoi(text) : 0;
    return count > 0 ? count : quick;
}

} // namespace qir
