#include "fuzz/ContainerInput.h"

using namespace Qt::StringLiterals;

using namespace qir;

/// Open files: digits, header, checksums, sizes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArrayView input(data, static_cast<qsizetype>(size));
    const KeyDeriver noKey = [](const SecretBytes &, const KdfParameters &) -> LoadResult<SecretBytes> {
        return SecretBytes(32);
    };
    fuzz::readAndWriteAgain(fuzz::fileOfInput(input, nullptr), u"p"_s, noKey);
    return 0;
}
