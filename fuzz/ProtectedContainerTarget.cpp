#include "fuzz/ContainerInput.h"

#include <cstring>

using namespace Qt::StringLiterals;

using namespace qir;

namespace {

/// Stands in for the key derivation, whose cost would leave time for nothing else.
const SecretBytes &fixedKey() {
    static const SecretBytes key = [] {
        SecretBytes bytes(32);
        std::memset(bytes.data(), 'k', bytes.size());
        return bytes;
    }();
    return key;
}

} // namespace

/// Files under a key that is known: header MAC, sealed chunks, message tags.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const KeyDeriver deriveKey = [](const SecretBytes &, const KdfParameters &) -> LoadResult<SecretBytes> {
        return fixedKey().clone();
    };
    const QByteArrayView input(data, static_cast<qsizetype>(size));
    fuzz::readAndWriteAgain(fuzz::fileOfInput(input, &fixedKey()), u"p"_s, deriveKey);
    return 0;
}
