#include "tests/qirtbase/journal/JournalTest.h"

#include "qirtbase/model/Database.h"

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace qir {

QByteArray pumps() {
    Database database;
    database.addTable(u"Pump"_s);
    Table &table = database.table(0);
    database.removeField(table, 0);
    database.addField(table, u"On"_s, static_cast<int>(ColumnType::Bool), 0);
    database.addField(table, u"Speed"_s, static_cast<int>(ColumnType::Long), 0);
    database.addField(table, u"Name"_s, static_cast<int>(ColumnType::Text), 200);
    database.addRecord(table);
    database.addRecord(table);
    return encodeBody(database);
}

void JournalTest::appendRecords(const std::vector<QByteArray> &payloads) {
    auto folder = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(bench.journalFolderPath()), O_RDONLY);
    auto file = JournalFile::open(FileOps::system(), std::move(*folder), systemPath(bench.journals()[0]),
                                  RandomSource::system());
    ASSERT_TRUE(file);
    file->unlock(bench.keys());
    QByteArray record;
    while (file->readRecord(record)) {
    }
    for (const QByteArray &payload : payloads)
        ASSERT_TRUE(file->append(payload));
}

} // namespace qir
