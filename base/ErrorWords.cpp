#include "base/ErrorWords.h"

#include <new>
#include <stdexcept>

namespace qir {

using namespace Qt::StringLiterals;

bool isLackOfMemory(const std::exception &error) {
    return dynamic_cast<const std::bad_alloc *>(&error) != nullptr ||
           dynamic_cast<const std::length_error *>(&error) != nullptr;
}

QString errorWords(const std::exception &error) {
    return isLackOfMemory(error) ? u"There is not enough memory."_s : QString::fromUtf8(error.what());
}

} // namespace qir
