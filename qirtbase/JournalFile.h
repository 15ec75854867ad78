#pragma once

#include "base/FileOps.h"
#include "qirtbase/ChunkSeal.h"
#include "qirtbase/Container.h"
#include "qirtbase/FileHeader.h"
#include "qirtbase/LoadError.h"
#include "qirtbase/RandomSource.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// A journal on disk: a file that only grows, made of records that are whole or not there.
///
///     journal = head | segment*
///     head    = "QIRJRNL1" | u32 length of the head | u8 sealed | u8[3] 0 | file id [16] | save id [16] | nonce [16]
///               | u32 passes | u32 memory KiB | u32 lanes | u32 0 | salt [16] | u16 path length | path | digest [32]
///     segment = u32 0xffffffff | stream header [24] | record*
///     record  = u32 length of what follows | payload and tag
///
/// Numbers are little-endian. The digest is BLAKE2b-256 over the head before it. Sealed: the key derivation's numbers
/// and salt as in a protected file; the records of a segment are the messages of a secretstream (17 bytes more than the
/// payload) with the key BLAKE2b-256(key: master; head digest | u64 offset of the segment). Open: those numbers are
/// zeros; a record's tag is the first 16 bytes of its link, link = BLAKE2b-256(previous link | payload), and a segment
/// starts with the link BLAKE2b-256(head digest | u64 offset | stream header). Every session that goes on with a
/// journal starts a segment of its own, so no key stream is used twice.
namespace qir {

struct JournalHead {
    std::string path; ///< canonicalPath() of the file.
    FileIdentifier fileId{};
    FileIdentifier base{}; ///< The save id of the version that the changes start from.
    std::array<unsigned char, 16> nonce{};
    bool sealed = false;
    KdfParameters kdf; ///< Meaningful only when sealed.
};

namespace journal {
inline constexpr std::size_t payloadMax = std::size_t{2} << 20;
}

/// An open journal, locked for this instance. Reads from the start, then appends.
class JournalFile {
public:
    /// A new journal in a folder, under a new name, head not written before the first append. `keys` seal it when they
    /// have a master key.
    static SystemResult<JournalFile> create(FileOps &ops, OpenFile folder, JournalHead head, const ContainerKeys &keys,
                                            RandomSource &random);
    /// An existing journal. Fails with EWOULDBLOCK where its editor lives.
    static LoadResult<JournalFile> open(FileOps &ops, OpenFile folder, const std::string &name, RandomSource &random);

    const JournalHead &head() const { return m_head; }
    const std::string &name() const { return m_name; }
    const OpenFile &folder() const { return m_folder; }
    /// Where the next record goes or is read from.
    std::uint64_t offset() const { return m_offset; }

    /// The key of a sealed journal that open() gave; before it nothing can be read.
    void unlock(const ContainerKeys &keys) { m_keys = keys.clone(); }
    /// Reads the next record. False at the end of what is whole: there, and after an error of the system, nothing more
    /// can be read.
    bool readRecord(QByteArray &payload);
    /// The error of the system that ended the reading, nothing where the journal itself ended.
    const std::optional<SystemError> &readError() const { return m_readError; }
    /// Starts over.
    void rewind();
    /// Cuts the journal there; what is appended next follows.
    SystemResult<void> cutAt(std::uint64_t offset);

    /// Appends a record of at most payloadMax bytes, in one write. On failure the journal is as it was, as far as the
    /// system lets us.
    SystemResult<void> append(QByteArrayView payload);
    SystemResult<void> sync();

    SystemResult<void> remove();
    /// Renames it within its folder.
    SystemResult<void> rename(const std::string &name);
    /// Writes all records from `other`, whose payloads are copied, and takes its name and place.
    static SystemResult<JournalFile> replace(JournalFile &other, JournalHead head, const ContainerKeys &keys,
                                             RandomSource &random);

private:
    JournalFile(FileOps &ops, RandomSource &random)
        : m_ops(&ops)
        , m_random(&random) {}

    void startSegment(std::uint64_t offset, const ChunkStream::Header &header);
    bool readSegmentHead();
    bool standsUnder(const std::string &name) const;
    bool readBytes(std::span<char> bytes, std::uint64_t offset);

    FileOps *m_ops;
    RandomSource *m_random;
    OpenFile m_folder;
    std::string m_name;
    OpenFile m_file;
    JournalHead m_head;
    QByteArray m_headBytes;
    HeaderDigest m_headDigest{};
    ContainerKeys m_keys;
    std::uint64_t m_size = 0; // of the file, while reading
    std::uint64_t m_offset = 0;
    std::optional<SystemError> m_readError;
    bool m_appending = false; // a segment of ours is open
    bool m_folderSynced = true;
    HeaderDigest m_link{};
    std::optional<ChunkStream> m_stream;
};

} // namespace qir
