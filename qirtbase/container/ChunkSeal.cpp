#include "qirtbase/container/ChunkSeal.h"

#include "base/ByteReader.h"

#include <xxhash.h>

namespace qir {

namespace {

static_assert(crypto_secretstream_xchacha20poly1305_ABYTES == layout::protectedTagSize);
static_assert(crypto_secretstream_xchacha20poly1305_HEADERBYTES == layout::streamHeaderSize);
static_assert(alignof(crypto_secretstream_xchacha20poly1305_state) == 1);

unsigned char messageTag(bool isLast) {
    return isLast ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : crypto_secretstream_xchacha20poly1305_TAG_MESSAGE;
}

} // namespace

OpenTag openChunkTag(QByteArrayView plain, const HeaderDigest &digest, std::uint64_t index) {
    const std::uint64_t seed = ByteReader(viewOf(digest)).number<std::uint64_t>() + index;
    const XXH128_hash_t hash = XXH3_128bits_withSeed(plain.data(), static_cast<std::size_t>(plain.size()), seed);
    OpenTag tag;
    qToLittleEndian<std::uint64_t>(hash.low64, tag.data());
    qToLittleEndian<std::uint64_t>(hash.high64, tag.data() + sizeof hash.low64);
    return tag;
}

ChunkStream::ChunkStream(const SecretBytes &bodyKey, const Header &header)
    : m_state(sizeof(crypto_secretstream_xchacha20poly1305_state)) {
    // Starting to write would draw the stream header itself. Starting to read sets up the same state from a given one,
    // so that the header comes from our source.
    crypto_secretstream_xchacha20poly1305_init_pull(state(), header.data(), bodyKey.data());
}

crypto_secretstream_xchacha20poly1305_state *ChunkStream::state() {
    return reinterpret_cast<crypto_secretstream_xchacha20poly1305_state *>(m_state.data());
}

void ChunkStream::seal(QByteArrayView plain, bool isLast, QByteArray &out) {
    const qsizetype at = out.size();
    out.resize(at + plain.size() + static_cast<qsizetype>(layout::protectedTagSize));
    crypto_secretstream_xchacha20poly1305_push(state(), reinterpret_cast<unsigned char *>(out.data() + at), nullptr,
                                               bytesOf(plain), static_cast<std::size_t>(plain.size()), nullptr, 0,
                                               messageTag(isLast));
}

bool ChunkStream::open(QByteArrayView sealed, bool isLast, std::span<char> plain) {
    if (static_cast<std::size_t>(sealed.size()) != plain.size() + layout::protectedTagSize)
        return false;
    unsigned char tag = 0;
    const int done = crypto_secretstream_xchacha20poly1305_pull(
        state(), reinterpret_cast<unsigned char *>(plain.data()), nullptr, &tag, bytesOf(sealed),
        static_cast<std::size_t>(sealed.size()), nullptr, 0);
    return done == 0 && tag == messageTag(isLast);
}

} // namespace qir
