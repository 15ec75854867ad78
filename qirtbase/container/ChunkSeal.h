#pragma once

#include "qirtbase/container/FileHeader.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/container/SecretKey.h"

#include <QByteArray>
#include <QByteArrayView>

#include <sodium.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace qir {

/// The tags behind the chunks of an open file: a checksum, no protection against anyone who can compute it too.
using OpenTag = std::array<unsigned char, layout::openTagSize>;
OpenTag openChunkTag(QByteArrayView plain, const HeaderDigest &digest, std::uint64_t index);

/// The state of an encrypted stream of chunks, in guarded memory.
class ChunkStream {
public:
    using Header = std::array<unsigned char, layout::streamHeaderSize>;

    /// Both directions start alike: from the body key and the stream header.
    ChunkStream(const SecretBytes &bodyKey, const Header &header);
    ~ChunkStream() { wipeStack(); }
    ChunkStream(ChunkStream &&) = default;
    ChunkStream &operator=(ChunkStream &&) = default;

    /// Appends the sealed chunk to `out`.
    void seal(QByteArrayView plain, bool isLast, QByteArray &out);
    /// Opens a sealed chunk into `plain`, which has room for its plain bytes. False when it was tampered with, is not
    /// the next one, or is the last one and should not be, or the other way round.
    bool open(QByteArrayView sealed, bool isLast, std::span<char> plain);

private:
    crypto_secretstream_xchacha20poly1305_state *state();

    SecretBytes m_state;
};

} // namespace qir
