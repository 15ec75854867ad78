#include "qirtbase/container/RandomSource.h"

#include <sodium.h>

namespace qir {

namespace {

class SystemRandomSource final : public RandomSource {
public:
    void fill(std::span<unsigned char> bytes) override { randombytes_buf(bytes.data(), bytes.size()); }
};

} // namespace

RandomSource &RandomSource::system() {
    static SystemRandomSource source;
    return source;
}

FileIdentifier freshIdentifier(RandomSource &random) {
    FileIdentifier id{};
    while (id == FileIdentifier{})
        random.fill(id);
    return id;
}

} // namespace qir
