#pragma once

#include "base/LoadError.h"
#include "qirtbase/container/FileLayout.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstdint>

namespace qir {

class SecretBytes;

using FileIdentifier = std::array<unsigned char, layout::idSize>;
using HeaderDigest = std::array<unsigned char, layout::digestSize>;

/// The most memory that a file may ask for.
inline constexpr std::uint32_t memoryMaxKiB = 1024 * 1024;

/// What one guess at a password costs.
struct KdfCosts {
    std::uint32_t passes = 3;
    std::uint32_t memoryKiB = 256 * 1024;

    friend bool operator==(const KdfCosts &, const KdfCosts &) = default;
};

/// All that the key derivation takes beside the password.
struct KdfParameters {
    KdfCosts costs;
    std::array<unsigned char, layout::saltSize> salt{};

    friend bool operator==(const KdfParameters &, const KdfParameters &) = default;
};

/// The header's fields as they mean something to the program.
struct FileHeader {
    bool isProtected = false;
    std::uint32_t optionalBits = 0; ///< Kept and written back.
    std::uint8_t chunkLog2 = layout::writtenChunkLog2;
    std::uint64_t bodyLength = 0;
    FileIdentifier fileId{};
    FileIdentifier saveId{};
    std::uint64_t generation = 1;
    KdfParameters kdf;     ///< Meaningful only when protected.
    QByteArray extensions; ///< As they stand in the file; kept and written back.
};

/// A header with the digits before it, as it stands at the start of a file.
struct HeaderBlock {
    FileHeader header;
    QByteArray bytes;
    HeaderDigest digest{}; ///< The digest at the header's end; the chunks are bound to it.
};

/// Writes the block of a header. `headKey` seals it in a protected file and is null in an open one.
HeaderBlock encodeHeader(const FileHeader &header, const SecretBytes *headKey);

/// Writes the sums at the end of a block whose other bytes stand: the MAC where there is a key, and the digest, which
/// it gives back.
HeaderDigest sealHeader(QByteArray &block, const SecretBytes *headKey);

/// The length of the header from the first ten bytes of a file.
LoadResult<std::size_t> decodeHeaderLength(QByteArrayView firstBytes);

/// Reads a whole block (digits and header): magic, digest, versions, ids, methods, extensions, in this order. The
/// header MAC and the size equation are not looked at here. Error texts are reasons without the file's name.
LoadResult<HeaderBlock> decodeHeader(QByteArray block);

/// Whether the block was sealed with this key: tells a wrong password from a damaged file.
bool headerMacMatches(const HeaderBlock &block, const SecretBytes &headKey);

/// Whether the costs are ones that we spend on a file from elsewhere.
LoadResult<void> checkKdfCosts(const FileHeader &header);

/// The length of the whole file that has this header; only for body lengths below 2^62.
std::uint64_t fileSizeOf(const HeaderBlock &block);
/// How many chunks hold a body: at least one.
std::uint64_t chunkCountOf(const FileHeader &header);
/// How many plain bytes chunk `index` holds.
std::size_t chunkPlainSize(const FileHeader &header, std::uint64_t index);

} // namespace qir
