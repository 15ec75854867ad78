#include "qirtbase/journal/JournalFile.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <sodium.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t privateFile = 0600;
constexpr int namesMax = 16;
constexpr std::size_t pieceSize = std::size_t{1} << 16; // of a copy
constexpr int holdTries = 4;
constexpr std::chrono::milliseconds holdPause{5};

using namespace journal::record;

HeaderDigest digestOf(QByteArrayView first, QByteArrayView second = {}) {
    HeaderDigest digest;
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, digest.size());
    crypto_generichash_update(&state, bytesOf(first), static_cast<std::size_t>(first.size()));
    crypto_generichash_update(&state, bytesOf(second), static_cast<std::size_t>(second.size()));
    crypto_generichash_final(&state, digest.data(), digest.size());
    return digest;
}

std::string freshName(const std::string &tag, RandomSource &random) {
    std::array<unsigned char, 4> tail{};
    random.fill(tail);
    return tag + '-' + viewOf(tail).toByteArray().toHex().toStdString();
}

std::string tagOf(const JournalHead &head, const ContainerKeys &keys) {
    return head.keyInFile ? journalTag(head.fileId, keys) : journalTag(head.fileId, {});
}

/// A payload as it is sealed: its length does not show.
QByteArray padded(QByteArrayView payload) {
    QByteArray out;
    ByteWriter(out).sizedBytes<std::uint32_t>(payload);
    const auto step = static_cast<qsizetype>(journal::step);
    out.resize((out.size() + step - 1) / step * step, '\0');
    return out;
}

JournalRefusal unreadable(SystemError error) {
    const auto kind = error.number == ENOENT        ? JournalRefusal::Kind::Gone
                      : error.number == EWOULDBLOCK ? JournalRefusal::Kind::Held
                                                    : JournalRefusal::Kind::Unreadable;
    return {kind, systemErrorWords(error)};
}

/// A journal opened for reading or more, where it can be trusted.
JournalResult<OpenFile> openTrusted(FileOps &ops, int folder, const std::string &name, int flags) {
    auto file = OpenFile::openAt(ops, folder, name, flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return tl::unexpected(unreadable(file.error()));
    const auto status = ops.status(file->descriptor());
    if (!status)
        return tl::unexpected(unreadable(status.error()));
    if (!S_ISREG(status->st_mode))
        return tl::unexpected(JournalRefusal{JournalRefusal::Kind::NotTrusted, u"it is not a file"_s});
    if (const QString why = whyNotTrusted(*status); !why.isEmpty())
        return tl::unexpected(JournalRefusal{JournalRefusal::Kind::NotTrusted, why});
    return std::move(*file);
}

/// Takes hold of a journal. Somebody who only looked whether it is held may have kept us from it for a moment.
SystemResult<void> hold(FileOps &ops, int file) {
    SystemResult<void> held;
    for (int tries = 0; tries < holdTries; ++tries) {
        held = ops.lock(file, LockKind::Exclusive);
        if (held || held.error().number != EWOULDBLOCK)
            break;
        std::this_thread::sleep_for(holdPause);
    }
    return held;
}

JournalResult<JournalHead> readHead(FileOps &ops, int file, QByteArray &bytes) {
    bytes.resize(static_cast<qsizetype>(journal::headSizeMax));
    const auto count = readFully(ops, file, {bytes.data(), static_cast<std::size_t>(bytes.size())}, 0);
    if (!count)
        return tl::unexpected(unreadable(count.error()));
    if (*count == 0) // its first record was never written
        return tl::unexpected(JournalRefusal{JournalRefusal::Kind::Gone, {}});
    QByteArrayView whole;
    auto head = decodeJournalHead(QByteArrayView(bytes).first(static_cast<qsizetype>(*count)), whole);
    bytes.resize(whole.size());
    return head;
}

SystemResult<void> copyBytes(FileOps &ops, int from, int to) {
    std::vector<char> piece(pieceSize);
    for (std::uint64_t at = 0;; at += piece.size()) {
        const auto count = readFully(ops, from, piece, at);
        if (!count)
            return tl::unexpected(count.error());
        if (const auto written =
                writeFullyAt(ops, to, QByteArrayView(piece.data(), static_cast<qsizetype>(*count)), at);
            !written || *count < piece.size())
            return written;
    }
}

SecretBytes segmentKey(const SecretBytes &master, const HeaderDigest &headDigest, std::uint64_t offset) {
    QByteArray over = viewOf(headDigest).toByteArray();
    ByteWriter(over).number(offset);
    SecretBytes key(crypto_secretstream_xchacha20poly1305_KEYBYTES);
    crypto_generichash(key.data(), key.size(), bytesOf(over), static_cast<std::size_t>(over.size()), master.data(),
                       master.size());
    return key;
}

} // namespace

// ------------------------------------------------------------------------------------------------ making and opening

SystemResult<JournalFile> JournalFile::create(FileOps &ops, OpenFile folder, JournalHead head,
                                              const ContainerKeys &keys, RandomSource &random) {
    if (!fitsJournalHead(head))
        return tl::unexpected(SystemError{ENAMETOOLONG});
    JournalFile journal(ops, random);
    const std::string tag = tagOf(head, keys);
    SystemError error{EEXIST};
    for (int tries = 0; tries < namesMax && error.number == EEXIST; ++tries) {
        journal.m_name = freshName(tag, random);
        auto file = OpenFile::openAt(ops, folder.descriptor(), journal.m_name, O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW,
                                     privateFile);
        if (!file) {
            error = file.error();
            continue;
        }
        const auto locked = ops.lock(file->descriptor(), LockKind::Exclusive);
        if (locked) {
            journal.m_file = std::move(*file);
            break;
        }
        (void)ops.unlinkAt(folder.descriptor(), journal.m_name);
        // Somebody who looks for journals got hold of it first; it is empty, and the next one is made.
        error = locked.error().number == EWOULDBLOCK ? SystemError{EEXIST} : locked.error();
    }
    if (!journal.m_file)
        return tl::unexpected(error);
    random.fill(head.nonce);
    head.sealed = keys.isProtected();
    head.kdf = keys.kdf;
    head.version = JournalHead().version;
    journal.m_folder = std::move(folder);
    journal.m_keys = keys.clone();
    journal.m_headBytes = encodeJournalHead(head, keys.master);
    journal.m_headDigest = digestOf(journal.m_headBytes);
    journal.m_head = std::move(head);
    journal.m_folderSynced = false;
    return journal;
}

JournalResult<JournalFile> JournalFile::open(FileOps &ops, OpenFile folder, const std::string &name,
                                             RandomSource &random) {
    JournalFile journal(ops, random);
    auto file = openTrusted(ops, folder.descriptor(), name, O_RDWR);
    if (!file)
        return tl::unexpected(file.error());
    if (const auto held = hold(ops, file->descriptor()); !held)
        return tl::unexpected(unreadable(held.error()));
    journal.m_folder = std::move(folder);
    journal.m_file = std::move(*file);
    // Whoever held it until now may have ended it meanwhile: then it is no journal any more.
    const auto status = ops.status(journal.m_file.descriptor());
    if (!status)
        return tl::unexpected(unreadable(status.error()));
    if (!journal.standsUnder(name))
        return tl::unexpected(unreadable({ENOENT}));
    auto head = readHead(ops, journal.m_file.descriptor(), journal.m_headBytes);
    if (!head)
        return tl::unexpected(head.error());
    journal.m_name = name;
    journal.m_head = std::move(*head);
    journal.m_headDigest = digestOf(journal.m_headBytes);
    journal.m_size = static_cast<std::uint64_t>(status->st_size);
    journal.rewind();
    return journal;
}

JournalResult<JournalHead> JournalFile::peek(FileOps &ops, int folder, const std::string &name) {
    const auto file = openTrusted(ops, folder, name, O_RDONLY);
    if (!file)
        return tl::unexpected(file.error());
    QByteArray bytes;
    return readHead(ops, file->descriptor(), bytes);
}

bool JournalFile::isLeft(FileOps &ops, int folder, const std::string &name) {
    const auto file = openTrusted(ops, folder, name, O_RDONLY);
    return file && ops.lock(file->descriptor(), LockKind::Shared);
}

bool JournalFile::unlock(const ContainerKeys &keys) {
    m_keys = keys.clone();
    return identifyJournal(m_head, m_headBytes, m_keys.master);
}

// ------------------------------------------------------------------------------------------------------------ reading

void JournalFile::rewind() {
    m_offset = static_cast<std::uint64_t>(m_headBytes.size());
    m_readError.reset();
    m_damaged = false;
    m_stream.reset();
    m_appending = false;
}

/// False where there are not so many bytes, or where the system does not give them.
bool JournalFile::readBytes(std::span<char> bytes, std::uint64_t offset) {
    const auto count = readFully(*m_ops, m_file.descriptor(), bytes, offset);
    if (!count)
        m_readError = count.error();
    return count && *count == bytes.size();
}

void JournalFile::startSegment(std::uint64_t offset, const ChunkStream::Header &header) {
    if (m_head.sealed) {
        m_stream.emplace(segmentKey(m_keys.master, m_headDigest, offset), header);
        return;
    }
    QByteArray over;
    ByteWriter(over).number(offset);
    over.append(viewOf(header));
    m_link = digestOf(viewOf(m_headDigest), over);
}

bool JournalFile::readSegmentHead() {
    ChunkStream::Header header;
    if (!readBytes({reinterpret_cast<char *>(header.data()), header.size()}, m_offset + journal::segment::streamHeader))
        return false;
    startSegment(m_offset, header);
    m_offset += journal::segment::headSize;
    return true;
}

bool JournalFile::readRecord(QByteArray &payload) {
    const std::size_t tagSize = m_head.sealed ? sealedTagSize : openTagSize;
    const std::size_t sizeMax = tagSize + journal::payloadMax + (isPadded() ? journal::step : 0);
    const std::uint64_t begin = m_offset;
    bool inSegment = begin > static_cast<std::uint64_t>(m_headBytes.size());
    char lengthBytes[lengthSize];
    while (readBytes(lengthBytes, m_offset)) {
        const auto length = ByteReader(QByteArrayView(lengthBytes, lengthSize)).number<std::uint32_t>();
        if (length == journal::segment::mark) {
            if (!readSegmentHead())
                break;
            inSegment = true;
            continue;
        }
        m_damaged = !inSegment || length < tagSize || length > sizeMax;
        if (m_damaged || length > m_size - m_offset - lengthSize)
            break;
        QByteArray record(static_cast<qsizetype>(length), Qt::Uninitialized);
        if (!readBytes({record.data(), static_cast<std::size_t>(record.size())}, m_offset + lengthSize))
            break;
        m_damaged = !openRecord(record, payload);
        if (m_damaged)
            break;
        m_offset += lengthSize + length;
        return true;
    }
    m_offset = begin;
    return false;
}

/// False where the record is not what was written.
bool JournalFile::openRecord(QByteArrayView record, QByteArray &payload) {
    const std::size_t tagSize = m_head.sealed ? sealedTagSize : openTagSize;
    const QByteArrayView plain = record.chopped(static_cast<qsizetype>(tagSize));
    if (!m_head.sealed) {
        const HeaderDigest link = digestOf(viewOf(m_link), plain);
        if (record.sliced(plain.size()) != viewOf(link).first(static_cast<qsizetype>(tagSize)))
            return false;
        m_link = link;
        payload = plain.toByteArray();
        return true;
    }
    payload.resize(plain.size());
    if (!m_stream->open(record, false, {payload.data(), static_cast<std::size_t>(payload.size())}))
        return false;
    if (!isPadded())
        return true;
    ByteReader reader(payload);
    const QByteArrayView inside = reader.sizedBytes<std::uint32_t>();
    if (!reader.isComplete())
        return false;
    payload = inside.toByteArray();
    return true;
}

SystemResult<void> JournalFile::cutAt(std::uint64_t offset) {
    m_offset = offset;
    m_appending = false;
    return m_ops->truncate(m_file.descriptor(), offset);
}

// ----------------------------------------------------------------------------------------------------------- appending

SystemResult<void> JournalFile::append(QByteArrayView payload) {
    if (static_cast<std::size_t>(payload.size()) > journal::payloadMax)
        return tl::unexpected(SystemError{EMSGSIZE}); // nobody would read it
    QByteArray out;
    const bool isFirst = m_offset == 0;
    const std::uint64_t begin = m_offset;
    if (isFirst)
        out = m_headBytes;
    else if (const auto status = m_ops->status(m_file.descriptor()))
        m_cut = m_cut || static_cast<std::uint64_t>(status->st_size) < begin;
    ByteWriter writer(out);
    if (!m_appending) {
        ChunkStream::Header header;
        m_random->fill(header);
        startSegment(begin + static_cast<std::uint64_t>(out.size()), header);
        writer.number(journal::segment::mark);
        writer.array(header);
    }
    if (m_head.sealed) {
        const QByteArray plain = isPadded() ? padded(payload) : payload.toByteArray();
        writer.number(static_cast<std::uint32_t>(static_cast<std::size_t>(plain.size()) + sealedTagSize));
        m_stream->seal(plain, false, out);
    } else {
        m_link = digestOf(viewOf(m_link), payload);
        writer.number(static_cast<std::uint32_t>(static_cast<std::size_t>(payload.size()) + openTagSize));
        writer.bytes(payload);
        writer.bytes(viewOf(m_link).first(static_cast<qsizetype>(openTagSize)));
    }
    if (const auto written = writeFullyAt(*m_ops, m_file.descriptor(), out, begin); !written) {
        m_appending = false;                               // what the record was sealed with is not used again
        (void)m_ops->truncate(m_file.descriptor(), begin); // a torn record ends the reading anyway
        return written;
    }
    m_appending = true;
    m_offset = begin + static_cast<std::uint64_t>(out.size());
    return {};
}

SystemResult<void> JournalFile::sync() {
    if (const auto synced = m_ops->syncData(m_file.descriptor()); !synced)
        return synced;
    if (m_folderSynced)
        return {};
    const auto synced = m_ops->sync(m_folder.descriptor());
    m_folderSynced = synced.has_value();
    return synced;
}

bool JournalFile::isLostFrom(const std::string &path) const {
    const auto there = m_ops->statusAt(AT_FDCWD, path, FollowLinks::No);
    if (!there)
        return there.error().number == ENOENT || there.error().number == ENOTDIR;
    const auto ours = m_ops->status(m_file.descriptor());
    return m_cut || (ours && (there->st_ino != ours->st_ino || there->st_dev != ours->st_dev));
}

SystemResult<void> JournalFile::retire(FileOps &ops, int folder, const std::string &name) {
    // Its time first: one that looked old would be gone before anybody could want it back.
    const auto file = OpenFile::openAt(ops, folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return tl::unexpected(file.error());
    if (const auto aged = ops.setTimeToNow(file->descriptor()); !aged)
        return aged;
    return ops.renameAt(folder, name, name + journal::retiredSuffix, 0);
}

SystemResult<void> JournalFile::remove() {
    return m_ops->unlinkAt(m_folder.descriptor(), m_name);
}

SystemResult<std::string> JournalFile::keepCopy() {
    const std::string name = freshName(journalTagOf(m_name), *m_random) + journal::retiredSuffix;
    const auto copy =
        OpenFile::openAt(*m_ops, m_folder.descriptor(), name, O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW, privateFile);
    if (!copy)
        return tl::unexpected(copy.error());
    auto copied = copyBytes(*m_ops, m_file.descriptor(), copy->descriptor());
    if (copied)
        copied = m_ops->sync(copy->descriptor());
    if (copied)
        copied = m_ops->sync(m_folder.descriptor());
    if (copied)
        return name;
    (void)m_ops->unlinkAt(m_folder.descriptor(), name);
    return tl::unexpected(copied.error());
}

SystemResult<void> JournalFile::rename(const std::string &name) {
    for (int tries = 1;; ++tries) {
        const auto renamed = m_ops->renameAt(m_folder.descriptor(), m_name, name, 0);
        // One that failed may have been done all the same.
        if (renamed || standsUnder(name)) {
            m_name = name;
            return {};
        }
        if (renamed.error().number != EINTR || tries == FileOps::interruptedTries)
            return renamed;
    }
}

bool JournalFile::standsUnder(const std::string &name) const {
    const auto there = m_ops->statusAt(m_folder.descriptor(), name, FollowLinks::No);
    const auto ours = m_ops->status(m_file.descriptor());
    return there && ours && there->st_ino == ours->st_ino && there->st_dev == ours->st_dev;
}

SystemResult<JournalFile> JournalFile::replace(JournalFile &other, JournalHead head, const ContainerKeys &keys,
                                               RandomSource &random) {
    FileOps &ops = *other.m_ops;
    auto folder = OpenFile::openAt(ops, other.m_folder.descriptor(), ".", O_RDONLY | O_DIRECTORY);
    if (!folder)
        return tl::unexpected(folder.error());
    auto journal = create(ops, std::move(*folder), std::move(head), keys, random);
    if (!journal)
        return journal;
    const std::uint64_t end = other.m_offset;
    const auto abandoned = [&](SystemError error) {
        (void)journal->remove();
        other.rewind();
        other.m_offset = end;
        return tl::unexpected(error);
    };
    // Until it is whole it has a name that nobody takes for a journal's.
    const std::string name = journal->m_name;
    if (const auto renamed = journal->rename(name + journal::partSuffix); !renamed)
        return abandoned(renamed.error());
    const auto status = ops.status(other.m_file.descriptor());
    if (!status)
        return abandoned(status.error());
    other.m_size = static_cast<std::uint64_t>(status->st_size);
    other.rewind();
    for (QByteArray payload; other.readRecord(payload);)
        if (const auto appended = journal->append(payload); !appended)
            return abandoned(appended.error());
    if (other.readError())
        return abandoned(*other.readError());
    if (other.isDamaged())
        return abandoned({EBADMSG}); // what stands behind the damage would be gone
    if (const auto synced = journal->sync(); !synced)
        return abandoned(synced.error());
    // Under the other's name where that may stay, so that there is never one too many.
    const bool keepsName = journalTagOf(other.m_name) == journalTagOf(name);
    if (const auto renamed = journal->rename(keepsName ? other.m_name : name); !renamed)
        return abandoned(renamed.error());
    const auto synced = ops.sync(journal->m_folder.descriptor());
    if (keepsName)
        return journal; // if the name is lost, the other one is still there
    if (!synced)
        return abandoned(synced.error());
    if (const auto removed = other.remove(); !removed && other.standsUnder(other.m_name))
        return abandoned(removed.error());
    return journal;
}

} // namespace qir
