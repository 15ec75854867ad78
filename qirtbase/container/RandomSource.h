#pragma once

#include "qirtbase/container/FileHeader.h"

#include <span>

namespace qir {

/// Where ids, salts and stream headers come from; tests replace it to pin exact bytes.
class RandomSource {
public:
    virtual ~RandomSource() = default;
    /// Fills `bytes` with unpredictable bytes.
    virtual void fill(std::span<unsigned char> bytes) = 0;

    /// The operating system's generator.
    static RandomSource &system();
};

/// A new id; never all zeros, which means "none".
FileIdentifier freshIdentifier(RandomSource &random);

} // namespace qir
