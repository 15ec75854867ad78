#include "base/ErrorWords.h"

#include <new>
#include <stdexcept>

namespace qir {

QString errorWords(const std::exception &error) {
    const bool isMemory = dynamic_cast<const std::bad_alloc *>(&error) != nullptr ||
                          dynamic_cast<const std::length_error *>(&error) != nullptr;
    return isMemory ? QStringLiteral("There is not enough memory.") : QString::fromUtf8(error.what());
}

} // namespace qir
