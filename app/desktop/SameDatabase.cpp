#include "app/desktop/SameDatabase.h"

#include "app/desktop/FileContent.h"
#include "compare/engine/TableComparison.h"
#include "platform/loop/MessageLoop.h"

#include <exception>

namespace qir {

namespace {

constexpr std::int64_t mostValues = 1'000'000; // read in a few hundredths of a second

void addText(ContentDigest &digest, QByteArrayView bytes) {
    digest.add(std::int64_t{bytes.size()});
    digest.add(bytes);
}

void addBlock(ContentDigest &digest, const ColumnBlock &block) {
    digest.add(static_cast<std::int64_t>(block.type()));
    if (!block.isText()) {
        addText(digest, block.values());
        return;
    }
    for (qsizetype i = 0; i < block.count(); ++i)
        addText(digest, block.textBytes(i));
}

void addCurrentTable(const QirDatabase &database, ContentDigest &digest) {
    const int records = database.QirTableRecordsCount();
    digest.add(std::int64_t{records});
    for (int field = 1; field <= database.QirTableFieldsCount(); ++field) {
        addText(digest, database.QIRTableFieldName(field).toUtf8());
        digest.add(std::int64_t{database.QIRTableFieldType(field).toInt()});
        digest.add(std::int64_t{database.QIRTableFieldSize(field).toInt()});
        if (records > 0)
            addBlock(digest, database.ReadColumn(field, 1, records));
    }
}

/// None where there are too many values.
std::optional<TablesDigest> digestOf(const QirDatabase &database) {
    if (!database.hasColumns())
        return std::nullopt;
    ContentDigest digest;
    std::int64_t values = 0;
    for (int table = 1; table <= database.QIRTablesCount(); ++table) {
        const QString name = database.QIRTableName(table);
        database.QIRTableRecordSource(name);
        values += std::int64_t{database.QirTableFieldsCount()} * database.QirTableRecordsCount();
        if (values > mostValues)
            return std::nullopt;
        addText(digest, name.toUtf8());
        addCurrentTable(database, digest);
    }
    const ContentDigest::Halves halves = digest.halves();
    return TablesDigest{.high = halves.high, .low = halves.low};
}

bool haveSameFields(const QirDatabase &one, const QirDatabase &other) {
    const int fields = one.QirTableFieldsCount();
    if (fields != other.QirTableFieldsCount())
        return false;
    for (int field = 1; field <= fields; ++field)
        if (one.QIRTableFieldName(field) != other.QIRTableFieldName(field) ||
            one.QIRTableFieldType(field) != other.QIRTableFieldType(field) ||
            one.QIRTableFieldSize(field) != other.QIRTableFieldSize(field))
            return false;
    return true;
}

bool haveSameTables(const QirDatabase &one, const QirDatabase &other) {
    const int tables = one.QIRTablesCount();
    if (tables != other.QIRTablesCount())
        return false;
    YieldTimer timer;
    for (int table = 1; table <= tables; ++table) {
        const QString name = one.QIRTableName(table);
        if (name != other.QIRTableName(table))
            return false;
        one.QIRTableRecordSource(name);
        other.QIRTableRecordSource(name);
        if (!haveSameFields(one, other) || currentTablesDiffer(one, other, [&timer](int) { timer.yieldIfDue(); }))
            return false;
    }
    return true;
}

} // namespace

std::optional<TablesDigest> digestOfSaved(const QirDatabase &database) {
    try {
        return database.DtbHasChanged() ? std::nullopt : digestOf(database);
    } catch (const std::exception &) { // told by whoever needs the tables
        return std::nullopt;
    }
}

bool holdsSameDatabase(const QirDatabase &database, const std::optional<TablesDigest> &saved, const QString &fileName,
                       const QString &place) {
    try {
        const QirDatabase onDisk = QirDatabase::create();
        onDisk.setLeaveJournal(true);
        onDisk.SetFilePlace(fileName, place);
        if (!onDisk.LoadDtb(fileName, QString()))
            return false;
        return (saved && digestOf(onDisk) == saved) || haveSameTables(database, onDisk);
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace qir
