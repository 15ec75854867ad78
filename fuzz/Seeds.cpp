// Makes the inputs that fuzzing starts from: fuzz_seeds FOLDER writes FOLDER/TARGET/NAME.

#include "qirtbase/container/Container.h"
#include "qirtbase/journal/JournalHead.h"
#include "qirtbase/model/BodyCodec.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <random>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

/// Counts up, so that the seeds come out the same each time.
class Counting : public RandomSource {
public:
    void fill(std::span<unsigned char> bytes) override {
        for (unsigned char &byte : bytes)
            byte = m_next++;
    }

private:
    unsigned char m_next = 1;
};

class Folder {
public:
    Folder(const QString &path, const QString &target)
        : m_path(path + u'/' + target) {
        if (!QDir().mkpath(m_path))
            throw std::runtime_error("cannot make " + m_path.toStdString());
    }
    void write(const QString &name, const QByteArray &bytes) const {
        QFile file(m_path + u'/' + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("cannot write " + file.fileName().toStdString());
    }

private:
    QString m_path;
};

Database oneOfEachType() {
    Database database;
    database.addTable(u"Valvole \u00E8"_s);
    Table &table = database.table(0);
    for (const int type : {1, 2, 3, 4, 7, 8, 10})
        database.addField(table, u"f%1"_s.arg(type), type, 12);
    database.addRecord(table);
    for (std::size_t field = 1; field < table.fieldCount(); ++field)
        database.setNumber(table, field, 0, -1.5);
    database.setText(table, 0, 0, u"a\u00E9\u20AC\U0001F600"_s);
    return database;
}

void writeBodies(const QString &path) {
    const Folder folder(path, u"body"_s);
    folder.write(u"empty"_s, encodeBody(Database()));
    folder.write(u"types"_s, encodeBody(oneOfEachType()));
    Database two = oneOfEachType();
    two.addTable(u"B"_s);
    two.removeRecord(two.table(1), 0);
    folder.write(u"two_tables"_s, encodeBody(two));
    // A section that no version knows yet, before the end: kept.
    const QByteArray body = encodeBody(Database());
    folder.write(u"unknown_section"_s, QByteArray::fromHex("7f00000003000000000000004a4b4c") + body);
}

QByteArray container(const QByteArray &body, const QByteArray &extensions, const ContainerKeys &keys) {
    Counting random;
    FileHeader header;
    header.chunkLog2 = layout::chunkLog2Min;
    header.extensions = extensions;
    random.fill(header.fileId);
    random.fill(header.saveId);
    ContainerWriter writer(header, keys, body, random);
    QByteArray bytes;
    for (QByteArrayView piece = writer.next(); !piece.isEmpty(); piece = writer.next())
        bytes.append(piece);
    return bytes;
}

void writeContainers(const QString &path, const QString &target, const ContainerKeys &keys) {
    const Folder folder(path, target);
    const QByteArray two(layout::headerLengthMax + 100, 'b');
    const QByteArray extension = QByteArray::fromHex("0100020041420200"
                                                     "0000");
    for (const char mending : {'\x00', '\x07', '\x0f'}) {
        const QString kind = u"_%1"_s.arg(static_cast<int>(mending));
        folder.write(u"empty"_s + kind, mending + container({}, {}, keys));
        folder.write(u"small"_s + kind, mending + container("hello", {}, keys));
        folder.write(u"two_chunks"_s + kind, mending + container(two, {}, keys));
        folder.write(u"extensions"_s + kind, mending + container("hello", extension, keys));
    }
}

void writeCalls(const QString &path) {
    const Folder folder(path, u"component"_s);
    std::mt19937 engine(1); // the same calls each time
    for (int i = 0; i < 24; ++i) {
        QByteArray calls(40 << (i % 4), '\0');
        for (char &byte : calls)
            byte = static_cast<char>(engine());
        folder.write(u"calls_%1"_s.arg(i), calls);
    }
}

void writeJournals(const QString &path, const ContainerKeys &keys) {
    const Folder folder(path, u"journal"_s);
    // Each operation that a record may hold, then whole and nested groups of them.
    const QByteArray place = QByteArray::fromHex("000000000000000000000000");
    const QByteArray text = QByteArray::fromHex("02000000c3a9");
    const QByteArray zero(8, '\0');
    const QByteArray changes = "\x01" + text + "\x02" + zero.first(4) + text + "\x04" + zero.first(4) + "\x0a" + zero +
                               text + "\x08" + zero.first(4) + "\x0a" + place + zero + "\x0b" + place + text + "\x07" +
                               zero + zero + "\x05" + zero + text + "\x09" + zero + "\x06" + zero + "\x03" +
                               zero.first(4);
    const QByteArray body = encodeBody(oneOfEachType());
    QByteArray length(4, '\0');
    length[0] = static_cast<char>(body.size() % 256);
    length[1] = static_cast<char>(body.size() / 256);
    const QByteArray image = '\x18' + length + body;
    folder.write(u"changes"_s, '\0' + changes);
    folder.write(u"group"_s, '\0' + ('\x14' + changes) + '\x15');
    folder.write(u"undone"_s, '\0' + ("\x14\x14" + changes) + "\x16\x15");
    folder.write(u"restarted"_s, '\0' + ('\x14' + changes) + "\x17\x15" + '\x1e' + QByteArray(16, 's') + '\x1f');
    folder.write(u"body_image"_s, '\0' + ('\x14' + image) + "\x1a\x15");
    folder.write(u"table_image"_s, '\0' + ('\x14' + image) + '\x19' + zero.first(4) + '\x15');
    for (const char mode : {'\x02', '\x03'})
        for (int i = 0; i < 6; ++i)
            folder.write(u"written_%1_%2"_s.arg(static_cast<int>(mode)).arg(i),
                         mode + QByteArray::fromHex("03050a080b000c03020d110e01") + static_cast<char>(i % 2) +
                             static_cast<char>(40 * i) + static_cast<char>(i / 2) + static_cast<char>(i));
    QByteArray head("QIRJRNL1");
    head += QByteArray::fromHex("8c000000"
                                "00000000") +
            QByteArray(48, 'i') + QByteArray(32, '\0') + QByteArray::fromHex("0200") + "/A" + QByteArray(32, 'd');
    head[8] = static_cast<char>(head.size());
    const QByteArray segment = QByteArray(4, '\xff') + QByteArray(24, 's') + QByteArray(40, '\x10');
    folder.write(u"raw"_s, '\x01' + head + segment);
    for (const bool sealed : {false, true}) {
        JournalHead newer;
        newer.place.path = "/A";
        newer.sealed = newer.keyInFile = sealed;
        folder.write(sealed ? u"raw_2_sealed"_s : u"raw_2"_s, '\x01' + encodeJournalHead(newer, keys.master) + segment);
    }
}

void writeCsv(const QString &path) {
    const Folder folder(path, u"csv"_s);
    folder.write(u"typed"_s, "Speed[long],Name[text:20],On[bool],Day[date],B[byte],I[int],D[double]\n"
                             "1,pump,true,2024-02-29T23:59:59,255,-32768,1.5e3\n"
                             "-2147483648,\"a \"\"b\"\", c\nd\",0,20240229,0,0,\n");
    folder.write(u"guessed"_s, "a,b,c,d,Flow [m3]\ntrue,2024-02-29,7,1.25,x\nfalse,2024-03-01 12:30,-3,1e9,\n");
    folder.write(u"kept_as_text"_s, "\xEF\xBB\xBF"
                                    "n\r\n007\r\n-0\r\n+1\r\n12345678901234567890\r\n");
    folder.write(u"wrong"_s, "a,b\n1\n");
    folder.write(u"no_utf8"_s, "a\n\xff\n");
}

} // namespace

int main(int argumentCount, char **arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "fuzz_seeds FOLDER\n");
        return 2;
    }
    try {
        const QString path = QFile::decodeName(arguments[1]);
        ContainerKeys keys;
        keys.kdf.costs = {1, 8 * 1024};
        keys.master = SecretBytes(32);
        std::fill_n(keys.master.data(), keys.master.size(), 'k');
        writeBodies(path);
        writeContainers(path, u"container"_s, {});
        writeContainers(path, u"protected_container"_s, keys);
        writeCalls(path);
        writeJournals(path, keys);
        writeCsv(path);
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "fuzz_seeds: %s\n", error.what());
        return 1;
    }
}
