#pragma once

#include "base/FileOps.h"
#include "qirtbase/container/ChunkSeal.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/journal/JournalHead.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// A journal on disk: a file that only grows, made of records that are whole or not there.
///
///     journal = head | segment*       (the head: JournalHead.h)
///     segment = u32 0xffffffff | stream header [24] | record*
///     record  = u32 length of what follows | payload and tag
///
/// Numbers are little-endian. Sealed: the records of a segment are the messages of a secretstream (17 bytes more than
/// what is in them) with the key BLAKE2b-256(key: master; head digest | u64 offset of the segment), each of them
/// u32 length of the payload | payload | zeros up to a multiple of 512 bytes (in version 1 the payload alone). Open: a
/// record's tag is the first 16 bytes of its link, link = BLAKE2b-256(previous link | payload), and a segment starts
/// with the link BLAKE2b-256(head digest | u64 offset | stream header). Head digest: BLAKE2b-256 of the whole head.
/// Every session that goes on with a journal starts a segment of its own, so no key stream is used twice.
namespace qir {

namespace journal {
/// What stands behind a journal's name once it was ended, and once it has been kept for long enough since.
inline constexpr char retiredSuffix[] = ".ended";
inline constexpr char expiredSuffix[] = ".expired";
/// Behind the name of one that is not whole yet.
inline constexpr char partSuffix[] = ".part";
} // namespace journal

/// An open journal, locked for this instance. Reads from the start, then appends.
class JournalFile {
public:
    /// A new journal in a folder, under a new name, head not written before the first append. `keys` seal it when they
    /// have a master key; the head's keyInFile tells whether the file on disk has the same.
    static SystemResult<JournalFile> create(FileOps &ops, OpenFile folder, JournalHead head, const ContainerKeys &keys,
                                            RandomSource &random);
    /// An existing journal that nobody holds and nobody else can have written.
    static JournalResult<JournalFile> open(FileOps &ops, OpenFile folder, const std::string &name,
                                           RandomSource &random);
    /// Its head alone, as far as that can be read without a key; nobody is kept from it.
    static JournalResult<JournalHead> peek(FileOps &ops, int folder, const std::string &name);
    /// Whether it was left: its editor does not live.
    static bool isLeft(FileOps &ops, int folder, const std::string &name);
    /// Gives a journal the name of one that was ended; from now on it is as old as that.
    static SystemResult<void> retire(FileOps &ops, int folder, const std::string &name);

    const JournalHead &head() const { return m_head; }
    const ContainerKeys &keys() const { return m_keys; }
    const std::string &name() const { return m_name; }
    const OpenFile &folder() const { return m_folder; }
    /// Where the next record goes or is read from.
    std::uint64_t offset() const { return m_offset; }

    /// The key of a sealed journal that open() gave; before it nothing can be read. False where it is seen to be wrong.
    bool unlock(const ContainerKeys &keys);
    /// Reads the next record. False at the end of what is whole: there, and after an error of the system, nothing more
    /// can be read.
    bool readRecord(QByteArray &payload);
    /// The error of the system that ended the reading, nothing where the journal itself ended.
    const std::optional<SystemError> &readError() const { return m_readError; }
    /// Whether the reading ended at bytes that were never written so, rather than at the end or in a record that was
    /// never finished.
    bool isDamaged() const { return m_damaged; }
    /// Starts over.
    void rewind();
    /// Cuts the journal there; what is appended next follows.
    SystemResult<void> cutAt(std::uint64_t offset);

    /// Appends a record of at most payloadMax bytes, in one write. On failure the journal is as it was, as far as the
    /// system lets us.
    SystemResult<void> append(QByteArrayView payload);
    SystemResult<void> sync();
    /// Whether it is not at this path any more, or was cut by somebody else.
    bool isLostFrom(const std::string &path) const;

    SystemResult<void> remove();
    /// Puts a synced copy of all its bytes beside it, as one that was ended; gives its name.
    SystemResult<std::string> keepCopy();
    SystemResult<void> retire() { return retire(*m_ops, m_folder.descriptor(), m_name); }
    /// Writes all records of `other` into a new journal with this head, which takes its place. All of it is on disk
    /// before `other` goes. On failure `other` is as it was.
    static SystemResult<JournalFile> replace(JournalFile &other, JournalHead head, const ContainerKeys &keys,
                                             RandomSource &random);

private:
    JournalFile(FileOps &ops, RandomSource &random)
        : m_ops(&ops)
        , m_random(&random) {}

    void startSegment(std::uint64_t offset, const ChunkStream::Header &header);
    bool readSegmentHead();
    bool openRecord(QByteArrayView record, QByteArray &payload);
    bool isPadded() const { return m_head.sealed && m_head.version > 1; }
    SystemResult<void> rename(const std::string &name);
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
    bool m_damaged = false;
    bool m_cut = false;       // by somebody else, while we wrote
    bool m_appending = false; // a segment of ours is open
    bool m_folderSynced = true;
    HeaderDigest m_link{};
    std::optional<ChunkStream> m_stream;
};

} // namespace qir
