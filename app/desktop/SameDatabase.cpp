#include "app/desktop/SameDatabase.h"

#include "compare/engine/TableComparison.h"
#include "platform/loop/MessageLoop.h"

#include <exception>

namespace qir {

namespace {

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

bool holdsSameDatabase(const QirDatabase &database, const QString &fileName, const QString &place) {
    try {
        const QirDatabase onDisk = QirDatabase::create();
        onDisk.setLeaveJournal(true);
        onDisk.SetFilePlace(fileName, place);
        return onDisk.LoadDtb(fileName, QString()) && haveSameTables(database, onDisk);
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace qir
