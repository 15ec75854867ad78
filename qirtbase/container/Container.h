#pragma once

#include "base/FileOps.h"
#include "base/LoadError.h"
#include "qirtbase/container/ChunkSeal.h"
#include "qirtbase/container/FileHeader.h"
#include "qirtbase/container/KeyDerivation.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/container/SecretKey.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>

namespace qir {

/// What a file may ask for while it is read.
struct ContainerLimits {
    /// Longer bodies are refused; memory is taken as the bytes are checked, never ahead by more than as much again.
    std::uint64_t bodyBytes = std::uint64_t{1} << 36;
};

/// The key of a file and what it was derived with; empty for an open file.
struct ContainerKeys {
    KdfParameters kdf;
    SecretBytes master;

    bool isProtected() const { return !master.isEmpty(); }
    ContainerKeys clone() const { return {kdf, master.clone()}; }
};

/// Writes a file piece by piece: header block, stream header, sealed chunks.
class ContainerWriter {
public:
    /// Takes ids, generation, chunk size, optional bits and extensions from `header`, the rest from keys and body.
    /// `keys` and `body` must outlive the writer.
    ContainerWriter(FileHeader header, const ContainerKeys &keys, QByteArrayView body, RandomSource &random);

    std::uint64_t size() const { return fileSizeOf(m_block); }
    const HeaderBlock &headerBlock() const { return m_block; }
    /// The next bytes of the file, valid until the next call; empty at its end.
    QByteArrayView next();

private:
    void sealNextChunk();

    HeaderBlock m_block;
    QByteArrayView m_body;
    std::optional<ChunkStream> m_stream;
    QByteArray m_buffer;
    std::uint64_t m_chunk = 0;
    bool m_headWritten = false;
    ChunkStream::Header m_streamHeader{};
};

/// Writes a whole container from the start of a file, at given places, so that no call made twice does harm.
SystemResult<void> writeContainer(FileOps &ops, int file, ContainerWriter &writer);

struct LoadedContainer {
    FileHeader header;
    ContainerKeys keys;
    QByteArray body;
};

/// Digits and header of an open file, all of decodeHeader()'s checks passed. Error texts of these functions are reasons
/// without the file's name.
LoadResult<HeaderBlock> readHeaderBlock(FileOps &ops, int file);

/// Reads a file from an open descriptor, every check passed, each one cheap before the next.
LoadResult<LoadedContainer> readContainer(FileOps &ops, int file, const QString &password,
                                          const ContainerLimits &limits, const KeyDeriver &deriveKey);

/// Reads back a file just written: the header is `expected`, byte for byte, and every chunk opens with `keys`.
LoadResult<void> verifyContainer(FileOps &ops, int file, const HeaderBlock &expected, const ContainerKeys &keys);

} // namespace qir
