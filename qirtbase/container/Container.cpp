#include "qirtbase/container/Container.h"

#include "base/ByteReader.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

using namespace layout;

/// A piece that is written at a time holds chunks up to this size: few calls, little memory.
constexpr qsizetype pieceSize = qsizetype{1} << 20;
/// Memory taken before anything of the body has been checked.
constexpr std::uint64_t firstRoom = std::uint64_t{1} << 20;

tl::unexpected<LoadError> unreadable(SystemError error) {
    return refused(LoadErrorKind::Unreadable, u"it cannot be read: %1"_s.arg(systemErrorWords(error)));
}

tl::unexpected<LoadError> truncated(std::uint64_t present, std::uint64_t wanted) {
    return refused(LoadErrorKind::Truncated, u"it ends after %1 of %2 bytes"_s.arg(present).arg(wanted));
}

LoadResult<std::uint64_t> regularFileSize(FileOps &ops, int file) {
    const auto status = ops.status(file);
    if (!status)
        return unreadable(status.error());
    if (S_ISDIR(status->st_mode))
        return refused(LoadErrorKind::NotAFile, u"it is a folder"_s);
    if (!S_ISREG(status->st_mode))
        return refused(LoadErrorKind::NotAFile, u"it is a device, not a file"_s);
    return static_cast<std::uint64_t>(status->st_size);
}

LoadResult<void> checkSize(const HeaderBlock &block, std::uint64_t size, const ContainerLimits &limits) {
    // A body length beyond the file's own size would make the equation wrap around.
    if (block.header.bodyLength > size)
        return truncated(size, static_cast<std::uint64_t>(block.bytes.size()) + block.header.bodyLength);
    const std::uint64_t wanted = fileSizeOf(block);
    if (size < wanted)
        return truncated(size, wanted);
    if (size > wanted)
        return refused(LoadErrorKind::Damaged, u"it is damaged: %1 bytes follow its end"_s.arg(size - wanted));
    if (block.header.bodyLength > limits.bodyBytes)
        return refused(LoadErrorKind::Limits,
                       u"its content is larger than is accepted (%1 bytes)"_s.arg(block.header.bodyLength));
    return {};
}

LoadResult<ContainerKeys> unlock(const HeaderBlock &block, const QString &password, const KeyDeriver &deriveKey) {
    ContainerKeys keys;
    if (!block.header.isProtected)
        return keys;
    return checkKdfCosts(block.header)
        .and_then([&]() -> LoadResult<SecretBytes> {
            if (password.isEmpty())
                return refused(LoadErrorKind::WrongPassword, u"it is protected and needs a password"_s);
            return deriveKey(passwordBytes(password), block.header.kdf);
        })
        .and_then([&](SecretBytes master) -> LoadResult<ContainerKeys> {
            if (!headerMacMatches(block, deriveHeadKey(master)))
                return refused(LoadErrorKind::WrongPassword, u"the password does not open it"_s);
            keys.kdf = block.header.kdf;
            keys.master = std::move(master);
            return std::move(keys);
        });
}

/// Reads and checks the chunks of a file one after the other.
class ChunkReader {
public:
    ChunkReader(FileOps &ops, int file, const HeaderBlock &block, const ContainerKeys &keys)
        : m_ops(ops)
        , m_file(file)
        , m_block(block)
        , m_offset(static_cast<std::uint64_t>(block.bytes.size()))
        , m_keys(keys) {}

    /// Reads what stands between header and chunks.
    LoadResult<void> start() {
        if (!m_block.header.isProtected)
            return {};
        ChunkStream::Header streamHeader;
        return read({reinterpret_cast<char *>(streamHeader.data()), streamHeader.size()}).map([&] {
            m_stream.emplace(deriveBodyKey(m_keys.master, m_block.digest), streamHeader);
        });
    }

    bool atEnd() const { return m_index == chunkCountOf(m_block.header); }
    std::size_t nextSize() const { return chunkPlainSize(m_block.header, m_index); }

    /// Puts the next chunk's plain bytes at `out`, which has room for them and the tag.
    LoadResult<void> next(char *out) {
        auto done = m_stream ? nextProtected(out) : nextOpen(out);
        ++m_index;
        return done;
    }

private:
    LoadResult<void> read(std::span<char> bytes) {
        const auto count = readFully(m_ops, m_file, bytes, m_offset);
        if (!count)
            return unreadable(count.error());
        if (*count < bytes.size())
            return truncated(m_offset + *count, fileSizeOf(m_block));
        m_offset += bytes.size();
        return {};
    }

    LoadResult<void> nextOpen(char *out) {
        const std::size_t size = nextSize();
        return read({out, size + openTagSize}).and_then([&]() -> LoadResult<void> {
            const OpenTag tag =
                openChunkTag(QByteArrayView(out, static_cast<qsizetype>(size)), m_block.digest, m_index);
            if (QByteArrayView(out + size, static_cast<qsizetype>(openTagSize)) != viewOf(tag))
                return damaged();
            return {};
        });
    }

    LoadResult<void> nextProtected(char *out) {
        const std::size_t size = nextSize();
        m_buffer.resize(static_cast<qsizetype>(size + protectedTagSize));
        return read({m_buffer.data(), static_cast<std::size_t>(m_buffer.size())}).and_then([&]() -> LoadResult<void> {
            if (!m_stream->open(m_buffer, m_index + 1 == chunkCountOf(m_block.header), {out, size}))
                return damaged();
            return {};
        });
    }

    LoadResult<void> damaged() const {
        return refused(LoadErrorKind::Damaged,
                       u"it is damaged: part %1 of %2 does not match its checksum"_s.arg(m_index + 1)
                           .arg(chunkCountOf(m_block.header)));
    }

    FileOps &m_ops;
    int m_file;
    const HeaderBlock &m_block;
    std::uint64_t m_offset;
    const ContainerKeys &m_keys;
    std::optional<ChunkStream> m_stream;
    QByteArray m_buffer;
    std::uint64_t m_index = 0;
};

/// Memory grows with what has been checked, so that a file that lies about its content costs no more than it is long.
void makeRoom(QByteArray &body, std::uint64_t size, std::uint64_t wholeSize) {
    if (size <= static_cast<std::uint64_t>(body.capacity()))
        return;
    const std::uint64_t twice = std::max(firstRoom, static_cast<std::uint64_t>(body.capacity()) * 2);
    body.reserve(static_cast<qsizetype>(std::max(size, std::min(twice, wholeSize + protectedTagSize))));
}

LoadResult<QByteArray> readBody(FileOps &ops, int file, const HeaderBlock &block, const ContainerKeys &keys) {
    ChunkReader reader(ops, file, block, keys);
    if (auto started = reader.start(); !started)
        return tl::unexpected(started.error());
    QByteArray body;
    std::size_t done = 0;
    while (!reader.atEnd()) {
        const std::size_t size = reader.nextSize();
        makeRoom(body, done + size + protectedTagSize, block.header.bodyLength);
        body.resize(static_cast<qsizetype>(done + size + protectedTagSize));
        if (auto read = reader.next(body.data() + done); !read)
            return tl::unexpected(read.error());
        done += size;
    }
    body.resize(static_cast<qsizetype>(done));
    return body;
}

} // namespace

ContainerWriter::ContainerWriter(FileHeader header, const ContainerKeys &keys, QByteArrayView body,
                                 RandomSource &random)
    : m_body(body) {
    header.isProtected = keys.isProtected();
    header.bodyLength = static_cast<std::uint64_t>(body.size());
    header.kdf = keys.kdf;
    if (!keys.isProtected()) {
        m_block = encodeHeader(header, nullptr);
        return;
    }
    const SecretBytes headKey = deriveHeadKey(keys.master);
    m_block = encodeHeader(header, &headKey);
    random.fill(m_streamHeader);
    m_stream.emplace(deriveBodyKey(keys.master, m_block.digest), m_streamHeader);
}

QByteArrayView ContainerWriter::next() {
    m_buffer.resize(0);
    if (!m_headWritten) {
        m_headWritten = true;
        m_buffer.append(m_block.bytes);
        if (m_stream)
            m_buffer.append(viewOf(m_streamHeader));
    }
    const std::uint64_t count = chunkCountOf(m_block.header);
    const auto sealedMax = (qsizetype{1} << m_block.header.chunkLog2) + static_cast<qsizetype>(protectedTagSize);
    m_buffer.reserve(pieceSize + sealedMax);
    while (m_chunk < count && m_buffer.size() < pieceSize)
        sealNextChunk();
    return m_buffer;
}

void ContainerWriter::sealNextChunk() {
    const FileHeader &header = m_block.header;
    const auto plain = m_body.sliced(static_cast<qsizetype>(m_chunk << header.chunkLog2),
                                     static_cast<qsizetype>(chunkPlainSize(header, m_chunk)));
    if (m_stream) {
        m_stream->seal(plain, m_chunk + 1 == chunkCountOf(header), m_buffer);
    } else {
        const OpenTag tag = openChunkTag(plain, m_block.digest, m_chunk);
        m_buffer.append(plain);
        m_buffer.append(viewOf(tag));
    }
    ++m_chunk;
}

SystemResult<void> writeContainer(FileOps &ops, int file, ContainerWriter &writer) {
    std::uint64_t done = 0;
    for (QByteArrayView piece = writer.next(); !piece.isEmpty(); piece = writer.next()) {
        if (const auto written = writeFullyAt(ops, file, piece, done); !written)
            return written;
        done += static_cast<std::uint64_t>(piece.size());
    }
    return {};
}

LoadResult<HeaderBlock> readHeaderBlock(FileOps &ops, int file) {
    QByteArray bytes(static_cast<qsizetype>(lengthDigits + headerLengthMax), Qt::Uninitialized);
    const auto count = readFully(ops, file, {bytes.data(), static_cast<std::size_t>(bytes.size())}, 0);
    if (!count)
        return unreadable(count.error());
    return decodeHeaderLength(QByteArrayView(bytes).first(static_cast<qsizetype>(*count)))
        .and_then([&](std::size_t length) -> LoadResult<HeaderBlock> {
            if (*count < lengthDigits + length)
                return truncated(*count, lengthDigits + length);
            bytes.resize(static_cast<qsizetype>(lengthDigits + length));
            return decodeHeader(std::move(bytes));
        });
}

LoadResult<LoadedContainer> readContainer(FileOps &ops, int file, const QString &password,
                                          const ContainerLimits &limits, const KeyDeriver &deriveKey) {
    const auto size = regularFileSize(ops, file);
    if (!size)
        return tl::unexpected(size.error());
    auto block = readHeaderBlock(ops, file);
    if (!block)
        return tl::unexpected(block.error());
    if (auto checked = checkSize(*block, *size, limits); !checked)
        return tl::unexpected(checked.error());
    auto keys = unlock(*block, password, deriveKey);
    if (!keys)
        return tl::unexpected(keys.error());
    auto body = readBody(ops, file, *block, *keys);
    if (!body)
        return tl::unexpected(body.error());
    return LoadedContainer{std::move(block->header), std::move(*keys), std::move(*body)};
}

LoadResult<void> verifyContainer(FileOps &ops, int file, const HeaderBlock &expected, const ContainerKeys &keys) {
    const auto size = regularFileSize(ops, file);
    if (!size)
        return tl::unexpected(size.error());
    const auto block = readHeaderBlock(ops, file);
    if (!block)
        return tl::unexpected(block.error());
    if (block->bytes != expected.bytes)
        return refused(LoadErrorKind::Damaged, u"its header is not the one that was written"_s);
    if (auto checked = checkSize(*block, *size, ContainerLimits{expected.header.bodyLength}); !checked)
        return checked;
    ChunkReader reader(ops, file, *block, keys);
    auto done = reader.start();
    QByteArray room(static_cast<qsizetype>((std::size_t{1} << block->header.chunkLog2) + protectedTagSize),
                    Qt::Uninitialized);
    while (done && !reader.atEnd())
        done = reader.next(room.data());
    return done;
}

} // namespace qir
