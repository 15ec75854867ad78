#include "qirtbase/JournalFile.h"

#include "qirtbase/KeyDerivation.h"

#include <QtEndian>

#include <sodium.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qir {

namespace {

constexpr char magic[] = {'Q', 'I', 'R', 'J', 'R', 'N', 'L', '1'};
constexpr mode_t privateFile = 0600;
constexpr std::uint32_t segmentMark = 0xffffffff;
constexpr std::size_t segmentHeadSize = sizeof segmentMark + layout::streamHeaderSize;
constexpr std::size_t lengthSize = sizeof(std::uint32_t);
constexpr std::size_t fixedHeadSize = 98; // up to the path
constexpr std::size_t pathMax = 16384;
constexpr std::size_t headSizeMax = fixedHeadSize + pathMax + layout::digestSize;
constexpr std::size_t openTagSize = 16;
constexpr int namesMax = 16;

const unsigned char *bytesOf(QByteArrayView view) {
    return reinterpret_cast<const unsigned char *>(view.data());
}

HeaderDigest digestOf(QByteArrayView first, QByteArrayView second = {}) {
    HeaderDigest digest;
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, digest.size());
    crypto_generichash_update(&state, bytesOf(first), std::size_t(first.size()));
    crypto_generichash_update(&state, bytesOf(second), std::size_t(second.size()));
    crypto_generichash_final(&state, digest.data(), digest.size());
    return digest;
}

template<std::size_t size>
QByteArrayView viewOf(const std::array<unsigned char, size> &bytes) {
    return QByteArrayView(reinterpret_cast<const char *>(bytes.data()), qsizetype(size));
}

template<class Number>
void put(QByteArray &out, Number value) {
    char bytes[sizeof value];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof bytes);
}

QByteArray encodeHead(const JournalHead &head) {
    QByteArray out(magic, sizeof magic);
    put(out, std::uint32_t(fixedHeadSize + head.path.size() + layout::digestSize));
    put(out, std::uint32_t(head.sealed ? 1 : 0));
    out.append(viewOf(head.fileId)).append(viewOf(head.base)).append(viewOf(head.nonce));
    put(out, head.sealed ? head.kdf.costs.passes : 0);
    put(out, head.sealed ? head.kdf.costs.memoryKiB : 0);
    put(out, std::uint32_t(head.sealed ? 1 : 0));
    put(out, std::uint32_t{0});
    out.append(viewOf(head.sealed ? head.kdf.salt : std::array<unsigned char, layout::saltSize>{}));
    put(out, std::uint16_t(head.path.size()));
    out.append(head.path.data(), qsizetype(head.path.size()));
    return out.append(viewOf(digestOf(out)));
}

/// The head of a journal; `bytes` holds as much of the file's start as there is. Nothing when it is none.
std::optional<JournalHead> decodeHead(QByteArrayView bytes, QByteArrayView &whole) {
    if (bytes.size() < qsizetype(fixedHeadSize + layout::digestSize) ||
        std::memcmp(bytes.data(), magic, sizeof magic) != 0)
        return std::nullopt;
    const char *at = bytes.data();
    const auto size = qFromLittleEndian<std::uint32_t>(at + 8);
    const auto pathSize = qFromLittleEndian<std::uint16_t>(at + 96);
    if (size != fixedHeadSize + pathSize + layout::digestSize || qsizetype(size) > bytes.size())
        return std::nullopt;
    whole = bytes.first(size);
    const QByteArrayView covered = whole.chopped(qsizetype(layout::digestSize));
    if (std::memcmp(digestOf(covered).data(), covered.end(), layout::digestSize) != 0)
        return std::nullopt;
    const auto sealed = qFromLittleEndian<std::uint32_t>(at + 12);
    if (sealed > 1)
        return std::nullopt;
    JournalHead head;
    head.sealed = sealed == 1;
    std::memcpy(head.fileId.data(), at + 16, head.fileId.size());
    std::memcpy(head.base.data(), at + 32, head.base.size());
    std::memcpy(head.nonce.data(), at + 48, head.nonce.size());
    head.kdf.costs = {qFromLittleEndian<std::uint32_t>(at + 64), qFromLittleEndian<std::uint32_t>(at + 68)};
    std::memcpy(head.kdf.salt.data(), at + 80, head.kdf.salt.size());
    head.path.assign(at + fixedHeadSize, pathSize);
    return head;
}

std::string freshName(const FileIdentifier &fileId, RandomSource &random) {
    std::array<unsigned char, 4> tail{};
    random.fill(tail);
    return QByteArray(viewOf(fileId).toByteArray().toHex() + '-' + viewOf(tail).toByteArray().toHex()).toStdString();
}

SecretBytes segmentKey(const SecretBytes &master, const HeaderDigest &headDigest, std::uint64_t offset) {
    QByteArray over = viewOf(headDigest).toByteArray();
    put(over, offset);
    SecretBytes key(crypto_secretstream_xchacha20poly1305_KEYBYTES);
    crypto_generichash(key.data(), key.size(), bytesOf(over), std::size_t(over.size()), master.data(), master.size());
    return key;
}

} // namespace

// ------------------------------------------------------------------------------------------------ making and opening

SystemResult<JournalFile> JournalFile::create(FileOps &ops, OpenFile folder, JournalHead head,
                                              const ContainerKeys &keys, RandomSource &random) {
    if (head.path.size() > pathMax)
        return tl::unexpected(SystemError{ENAMETOOLONG});
    JournalFile journal(ops, random);
    SystemError error{EEXIST};
    for (int tries = 0; tries < namesMax && error.number == EEXIST; ++tries) {
        journal.m_name = freshName(head.fileId, random);
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
    journal.m_folder = std::move(folder);
    journal.m_keys = keys.clone();
    journal.m_headBytes = encodeHead(head);
    journal.m_headDigest = digestOf(journal.m_headBytes);
    journal.m_head = std::move(head);
    journal.m_folderSynced = false;
    return journal;
}

LoadResult<JournalFile> JournalFile::open(FileOps &ops, OpenFile folder, const std::string &name,
                                          RandomSource &random) {
    const auto unreadable = [](SystemError error) {
        return tl::unexpected(LoadError{LoadErrorKind::Unreadable, systemErrorWords(error)});
    };
    JournalFile journal(ops, random);
    auto file = OpenFile::openAt(ops, folder.descriptor(), name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return unreadable(file.error());
    const auto status = ops.status(file->descriptor());
    if (!status)
        return unreadable(status.error());
    if (!S_ISREG(status->st_mode))
        return tl::unexpected(LoadError{LoadErrorKind::NotAFile, {}});
    if (const auto locked = ops.lock(file->descriptor(), LockKind::Exclusive); !locked)
        return unreadable(locked.error());
    // Whoever held it until now may have ended it meanwhile: then it is no journal any more.
    const auto there = ops.statusAt(folder.descriptor(), name, FollowLinks::No);
    if (!there || there->st_ino != status->st_ino || there->st_dev != status->st_dev)
        return unreadable(there ? SystemError{ENOENT} : there.error());
    QByteArray start(qsizetype(headSizeMax), Qt::Uninitialized);
    const auto count = readFully(ops, file->descriptor(), {start.data(), std::size_t(start.size())}, 0);
    if (!count)
        return unreadable(count.error());
    QByteArrayView whole;
    auto head = decodeHead(QByteArrayView(start).first(qsizetype(*count)), whole);
    if (!head)
        return tl::unexpected(LoadError{LoadErrorKind::Damaged, {}});
    journal.m_folder = std::move(folder);
    journal.m_name = name;
    journal.m_file = std::move(*file);
    journal.m_head = std::move(*head);
    journal.m_headBytes = whole.toByteArray();
    journal.m_headDigest = digestOf(journal.m_headBytes);
    journal.m_size = std::uint64_t(there->st_size);
    journal.rewind();
    return journal;
}

// ------------------------------------------------------------------------------------------------------------ reading

void JournalFile::rewind() {
    m_offset = std::uint64_t(m_headBytes.size());
    m_readError.reset();
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
    put(over, offset);
    over.append(viewOf(header));
    m_link = digestOf(viewOf(m_headDigest), over);
}

bool JournalFile::readSegmentHead() {
    ChunkStream::Header header;
    if (!readBytes({reinterpret_cast<char *>(header.data()), header.size()}, m_offset + sizeof segmentMark))
        return false;
    startSegment(m_offset, header);
    m_offset += segmentHeadSize;
    return true;
}

bool JournalFile::readRecord(QByteArray &payload) {
    const std::size_t tagSize = m_head.sealed ? layout::protectedTagSize : openTagSize;
    const std::uint64_t begin = m_offset;
    bool inSegment = begin > std::uint64_t(m_headBytes.size());
    char lengthBytes[lengthSize];
    for (;;) {
        if (!readBytes(lengthBytes, m_offset))
            break;
        const auto length = qFromLittleEndian<std::uint32_t>(lengthBytes);
        if (length == segmentMark) {
            if (!readSegmentHead())
                break;
            inSegment = true;
            continue;
        }
        if (!inSegment || length < tagSize || length > journal::payloadMax + tagSize ||
            length > m_size - m_offset - lengthSize)
            break;
        QByteArray record(qsizetype(length), Qt::Uninitialized);
        if (!readBytes({record.data(), std::size_t(record.size())}, m_offset + lengthSize))
            break;
        payload.resize(qsizetype(length - tagSize));
        if (m_head.sealed) {
            if (!m_stream->open(record, false, {payload.data(), std::size_t(payload.size())}))
                break;
        } else {
            const QByteArrayView plain = QByteArrayView(record).chopped(qsizetype(tagSize));
            const HeaderDigest link = digestOf(viewOf(m_link), plain);
            if (std::memcmp(link.data(), plain.end(), tagSize) != 0)
                break;
            m_link = link;
            std::memcpy(payload.data(), plain.data(), std::size_t(plain.size()));
        }
        m_offset += lengthSize + length;
        return true;
    }
    m_offset = begin;
    return false;
}

SystemResult<void> JournalFile::cutAt(std::uint64_t offset) {
    m_offset = offset;
    m_appending = false;
    return m_ops->truncate(m_file.descriptor(), offset);
}

// ----------------------------------------------------------------------------------------------------------- appending

SystemResult<void> JournalFile::append(QByteArrayView payload) {
    QByteArray out;
    const bool isFirst = m_offset == 0;
    const std::uint64_t begin = m_offset;
    if (isFirst)
        out = m_headBytes;
    if (!m_appending) {
        ChunkStream::Header header;
        m_random->fill(header);
        startSegment(begin + std::uint64_t(out.size()), header);
        put(out, segmentMark);
        out.append(viewOf(header));
    }
    if (m_head.sealed) {
        put(out, std::uint32_t(std::size_t(payload.size()) + layout::protectedTagSize));
        m_stream->seal(payload, false, out);
    } else {
        put(out, std::uint32_t(std::size_t(payload.size()) + openTagSize));
        m_link = digestOf(viewOf(m_link), payload);
        out.append(payload).append(viewOf(m_link).first(qsizetype(openTagSize)));
    }
    if (const auto written = writeFullyAt(*m_ops, m_file.descriptor(), out, begin); !written) {
        m_appending = false;                               // what the record was sealed with is not used again
        (void)m_ops->truncate(m_file.descriptor(), begin); // a torn record ends the reading anyway
        return written;
    }
    m_appending = true;
    m_offset = begin + std::uint64_t(out.size());
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

SystemResult<void> JournalFile::remove() {
    return m_ops->unlinkAt(m_folder.descriptor(), m_name);
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
    const auto abandoned = [&](SystemError error) {
        (void)journal->remove();
        return tl::unexpected(error);
    };
    // Until it is whole it has a name that nobody takes for a journal's.
    if (const auto renamed = journal->rename(journal->m_name + ".part"); !renamed)
        return abandoned(renamed.error());
    const auto status = ops.status(other.m_file.descriptor());
    if (!status)
        return abandoned(status.error());
    other.m_size = std::uint64_t(status->st_size);
    other.rewind();
    for (QByteArray payload; other.readRecord(payload);)
        if (const auto appended = journal->append(payload); !appended)
            return abandoned(appended.error());
    if (other.readError())
        return abandoned(*other.readError());
    if (const auto synced = journal->sync(); !synced)
        return abandoned(synced.error());
    if (const auto renamed = journal->rename(other.m_name); !renamed)
        return abandoned(renamed.error());
    (void)ops.sync(journal->m_folder.descriptor()); // if the name is lost, the other one is still there
    return journal;
}

} // namespace qir
