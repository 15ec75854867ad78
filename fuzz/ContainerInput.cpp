#include "fuzz/ContainerInput.h"

#include "fuzz/Require.h"
#include "qirtbase/container/Container.h"

#include <QtEndian>

#include <sodium.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace qir::fuzz {

namespace {

/// Where things stand in a file whose header is there, whatever it says.
struct Shape {
    qsizetype header;    ///< Where the chunks begin, the stream header included.
    qsizetype chunkSize; ///< Plain bytes.
    qsizetype tagSize;

    qsizetype pieceSize() const { return chunkSize + tagSize; }
};

std::optional<Shape> shapeOf(const QByteArray &file, bool sealed) {
    const auto length = decodeHeaderLength(file);
    if (!length || file.size() < static_cast<qsizetype>(layout::lengthDigits + *length))
        return std::nullopt;
    const auto log2 =
        static_cast<unsigned char>(file[static_cast<qsizetype>(layout::lengthDigits + layout::chunkSizeLog2)]);
    if (log2 < layout::chunkLog2Min || log2 > layout::chunkLog2Max)
        return std::nullopt;
    const Shape shape{static_cast<qsizetype>(layout::lengthDigits + *length + (sealed ? layout::streamHeaderSize : 0)),
                      qsizetype{1} << log2,
                      static_cast<qsizetype>(sealed ? layout::protectedTagSize : layout::openTagSize)};
    return file.size() >= shape.header ? std::optional(shape) : std::nullopt;
}

std::uint64_t bodyLengthOf(const Shape &shape, qsizetype fileSize) {
    const qsizetype rest = fileSize - shape.header;
    const qsizetype last = rest % shape.pieceSize();
    return static_cast<std::uint64_t>(rest / shape.pieceSize() * shape.chunkSize +
                                      std::max<qsizetype>(0, last - shape.tagSize));
}

void sealPiece(char *piece, qsizetype plainSize, unsigned char messageTag,
               crypto_secretstream_xchacha20poly1305_state &state) {
    const QByteArray plain(piece, plainSize);
    crypto_secretstream_xchacha20poly1305_push(&state, reinterpret_cast<unsigned char *>(piece), nullptr,
                                               reinterpret_cast<const unsigned char *>(plain.constData()),
                                               static_cast<std::size_t>(plainSize), nullptr, 0, messageTag);
}

void mendChunks(QByteArray &file, const Shape &shape, const HeaderDigest &digest, const SecretBytes *master,
                bool oddTags) {
    crypto_secretstream_xchacha20poly1305_state state;
    if (master)
        crypto_secretstream_xchacha20poly1305_init_pull(
            &state,
            reinterpret_cast<const unsigned char *>(file.constData() + shape.header -
                                                    static_cast<qsizetype>(layout::streamHeaderSize)),
            deriveBodyKey(*master, digest).data());
    std::uint64_t index = 0;
    for (qsizetype at = shape.header; file.size() - at >= shape.tagSize; at += shape.pieceSize()) {
        const qsizetype size = std::min(shape.pieceSize(), file.size() - at);
        const qsizetype plainSize = size - shape.tagSize;
        char *piece = file.data() + at;
        if (master) {
            const bool isLast = at + size == file.size();
            const auto right = static_cast<unsigned char>(isLast ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : 0);
            sealPiece(piece, plainSize, oddTags ? static_cast<unsigned char>(piece[size - 1]) : right, state);
        } else {
            const OpenTag tag = openChunkTag({piece, plainSize}, digest, index++);
            std::memcpy(piece + plainSize, tag.data(), tag.size());
        }
    }
}

OpenFile memoryFile(QByteArrayView bytes) {
    OpenFile file(FileOps::system(), ::memfd_create("container", MFD_CLOEXEC));
    require(writeFully(FileOps::system(), file.descriptor(), bytes).has_value(), "memory for the file");
    return file;
}

LoadResult<LoadedContainer> read(const OpenFile &file, const QString &password, const KeyDeriver &deriveKey) {
    return readContainer(FileOps::system(), file.descriptor(), password, {}, deriveKey);
}

} // namespace

QByteArray fileOfInput(QByteArrayView input, const SecretBytes *master) {
    if (input.isEmpty())
        return {};
    const auto mending = static_cast<unsigned char>(input.front());
    QByteArray file = input.sliced(1).toByteArray();
    const std::optional<Shape> shape = shapeOf(file, master != nullptr);
    if (!shape)
        return file;
    if (mending & MendBodyLength)
        qToLittleEndian<std::uint64_t>(bodyLengthOf(*shape, file.size()),
                                       file.data() + layout::lengthDigits + layout::bodyLength);
    const qsizetype blockSize = shape->header - static_cast<qsizetype>(master ? layout::streamHeaderSize : 0);
    QByteArray block = file.first(blockSize);
    HeaderDigest digest;
    if (mending & MendHeader) {
        std::optional<SecretBytes> headKey;
        if (master)
            headKey = deriveHeadKey(*master);
        digest = sealHeader(block, headKey ? &*headKey : nullptr);
        file.replace(0, blockSize, block);
    } else {
        std::memcpy(digest.data(), block.constData() + blockSize - static_cast<qsizetype>(layout::digestFromEnd),
                    digest.size());
    }
    if (mending & MendChunks)
        mendChunks(file, *shape, digest, master, mending & OddMessageTags);
    return file;
}

void readAndWriteAgain(QByteArrayView bytes, const QString &password, const KeyDeriver &deriveKey) {
    const auto loaded = read(memoryFile(bytes), password, deriveKey);
    if (!loaded) {
        require(!loaded.error().text.isEmpty(), "a refusal has a reason");
        return;
    }
    require(static_cast<std::uint64_t>(loaded->body.size()) == loaded->header.bodyLength,
            "the body is as long as its header says");

    ContainerWriter writer(loaded->header, loaded->keys, loaded->body, RandomSource::system());
    QByteArray again;
    for (QByteArrayView piece = writer.next(); !piece.isEmpty(); piece = writer.next())
        again.append(piece);
    const OpenFile file = memoryFile(again);
    require(verifyContainer(FileOps::system(), file.descriptor(), writer.headerBlock(), loaded->keys).has_value(),
            "what was written passes the check of a save");
    const auto second = read(file, password, deriveKey);
    require(second.has_value(), "what was written again is accepted");
    require(second->body == loaded->body, "the body is the same");
    const FileHeader &before = loaded->header;
    const FileHeader &after = second->header;
    require(after.isProtected == before.isProtected && after.optionalBits == before.optionalBits &&
                after.chunkLog2 == before.chunkLog2 && after.fileId == before.fileId && after.saveId == before.saveId &&
                after.generation == before.generation && after.kdf.salt == before.kdf.salt &&
                after.kdf.costs.passes == before.kdf.costs.passes &&
                after.kdf.costs.memoryKiB == before.kdf.costs.memoryKiB && after.extensions == before.extensions,
            "the header is the same");
}

} // namespace qir::fuzz
