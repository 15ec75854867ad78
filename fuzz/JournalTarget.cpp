#include "base/ByteReader.h"
#include "fuzz/InputBytes.h"
#include "fuzz/Require.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalFile.h"
#include "qirtbase/journal/JournalReplay.h"
#include "qirtbase/model/BodyCodec.h"

#include <QTemporaryDir>

#include <sodium.h>

#include <cstring>
#include <vector>

using namespace Qt::StringLiterals;

using namespace qir;

namespace {

enum Mode : unsigned char { Replay, RawFile, WrittenOpen, WrittenSealed, Modes };

constexpr qsizetype digestSize = static_cast<qsizetype>(layout::digestSize);

// ---- what records say

Database smallDatabase() {
    Database database;
    database.addTable(u"T"_s);
    Table &table = database.table(0);
    database.addField(table, u"N"_s, 7, 0);
    database.setText(table, 0, 0, u"a\u00E9"_s);
    return database;
}

/// Operation by operation: one that is refused has done nothing of its group, and what was done is a database that can
/// be saved.
void replay(QByteArrayView operations) {
    Database database = smallDatabase();
    JournalReplay journal(database);
    QByteArray whole = encodeBody(database);
    while (!operations.isEmpty()) {
        QByteArrayView rest = operations;
        if (!takeOperation(rest)) {
            fuzz::require(!journal.feed(operations), "bytes that are no operation are refused");
            break;
        }
        const bool done = journal.feed(operations.first(operations.size() - rest.size()));
        if (!done || !journal.isAtBoundary())
            fuzz::require(encodeBody(database) == whole, "nothing of a group is done before its end");
        if (!done)
            break;
        if (journal.isAtBoundary())
            whole = encodeBody(database);
        operations = rest;
    }
    fuzz::require(decodeBody(whole).has_value(), "what was made again can be saved and loaded");
}

// ---- the file

class Zeros : public RandomSource {
    void fill(std::span<unsigned char> bytes) override { std::memset(bytes.data(), 1, bytes.size()); }
};

/// One journal in a folder of its own, gone at the end.
class JournalPlace {
public:
    ~JournalPlace() {
        if (!m_name.empty())
            (void)FileOps::system().unlinkAt(folder().descriptor(), m_name);
    }
    JournalPlace() = default;
    JournalPlace(const JournalPlace &) = delete;
    JournalPlace &operator=(const JournalPlace &) = delete;

    JournalResult<JournalFile> open() { return JournalFile::open(FileOps::system(), folder(), m_name, m_random); }
    JournalFile create(const ContainerKeys &keys) {
        JournalHead head;
        head.place.path = "/data/A.DDB";
        head.fileId.fill(1);
        head.base.fill(2);
        head.sealed = keys.isProtected();
        head.kdf = keys.kdf;
        head.keyInFile = keys.isProtected();
        auto journal = JournalFile::create(FileOps::system(), folder(), head, keys, m_random);
        fuzz::require(journal.has_value(), "a journal can be made");
        m_name = journal->name();
        return std::move(*journal);
    }
    void write(QByteArrayView bytes) {
        m_name = "raw";
        const OpenFile file = descriptor(O_CREAT | O_TRUNC | O_RDWR);
        fuzz::require(writeFully(FileOps::system(), file.descriptor(), bytes).has_value(), "the file can be written");
    }
    OpenFile descriptor(int flags) const {
        auto file = OpenFile::openAt(FileOps::system(), folder().descriptor(), m_name, flags, S_IRUSR | S_IWUSR);
        fuzz::require(file.has_value(), "the file is there");
        return std::move(*file);
    }

private:
    static OpenFile folder() {
        static const QTemporaryDir place;
        auto opened = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(place.path()), O_RDONLY | O_DIRECTORY);
        fuzz::require(opened.has_value(), "there is a folder for the journal");
        return std::move(*opened);
    }

    std::string m_name;
    Zeros m_random;
};

ContainerKeys keysOf(Mode mode) {
    ContainerKeys keys;
    if (mode != WrittenSealed)
        return keys;
    keys.kdf.costs = {1, 8 * 1024};
    keys.master = SecretBytes(32);
    std::memset(keys.master.data(), 'k', keys.master.size());
    return keys;
}

/// Any bytes as a journal, its head's digest made right.
void readRaw(QByteArray bytes) {
    const auto length = ByteReader(bytes).from(journal::head::length).number<std::uint32_t>();
    if (length > digestSize && static_cast<qsizetype>(length) <= bytes.size())
        crypto_generichash(reinterpret_cast<unsigned char *>(bytes.data() + length - digestSize), layout::digestSize,
                           reinterpret_cast<const unsigned char *>(bytes.constData()),
                           length - static_cast<std::size_t>(digestSize), nullptr, 0);
    JournalPlace place;
    place.write(bytes);
    auto journal = place.open();
    if (!journal)
        return;
    journal->unlock(keysOf(journal->head().sealed ? WrittenSealed : WrittenOpen));
    QByteArray payload;
    while (journal->readRecord(payload))
        fuzz::require(journal->offset() <= static_cast<std::uint64_t>(bytes.size()), "no record ends behind the file");
}

/// Records written in two sessions and then damaged: what is read are the first ones of them, unchanged.
void writeDamageRead(fuzz::InputBytes &choices, Mode mode) {
    const ContainerKeys keys = keysOf(mode);
    JournalPlace place;
    std::vector<QByteArray> written;
    const auto append = [&](JournalFile &journal) {
        const int count = choices.inRange(0, 4);
        for (int i = 0; i < count; ++i) {
            written.emplace_back(choices.inRange(0, 60), static_cast<char>(choices.inRange(0, 256)));
            fuzz::require(journal.append(written.back()).has_value(), "a record can be written");
        }
    };
    QByteArray payload;
    {
        JournalFile first = place.create(keys);
        append(first);
        if (written.empty())
            return; // no head either
    }
    {
        auto second = place.open();
        fuzz::require(second.has_value(), "what was written is a journal");
        second->unlock(keys);
        std::size_t read = 0;
        while (second->readRecord(payload))
            fuzz::require(read < written.size() && payload == written[read++], "all that was written is read");
        fuzz::require(read == written.size(), "nothing is missing");
        append(*second);
    }
    const OpenFile file = place.descriptor(O_RDWR);
    const auto size = static_cast<int>(FileOps::system().status(file.descriptor())->st_size);
    const bool damaged = choices.yesOrNo();
    const int at = choices.inRange(0, size);
    if (damaged && choices.yesOrNo()) {
        (void)FileOps::system().truncate(file.descriptor(), static_cast<std::uint64_t>(at));
    } else if (damaged) {
        char byte = 0;
        (void)FileOps::system().readAt(file.descriptor(), {&byte, 1}, static_cast<std::uint64_t>(at));
        byte = static_cast<char>(byte ^ (1 << choices.inRange(0, 8)));
        (void)FileOps::system().writeAt(file.descriptor(), {&byte, 1}, static_cast<std::uint64_t>(at));
    }
    auto journal = place.open();
    if (!journal) {
        fuzz::require(damaged, "a sound journal can be opened");
        return;
    }
    journal->unlock(keys);
    std::size_t read = 0;
    while (journal->readRecord(payload))
        fuzz::require(read < written.size() && payload == written[read++],
                      "only what was written is read, in its order");
    fuzz::require(damaged || read == written.size(), "all of a sound journal is read");
}

} // namespace

/// Journals of the changes since the last save.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0)
        return 0;
    const auto mode = static_cast<Mode>(data[0] % Modes);
    const QByteArrayView rest(data + 1, static_cast<qsizetype>(size) - 1);
    if (mode == Replay) {
        replay(rest);
    } else if (mode == RawFile) {
        readRaw(rest.toByteArray());
    } else {
        fuzz::InputBytes choices(data + 1, size - 1);
        writeDamageRead(choices, mode);
    }
    return 0;
}
