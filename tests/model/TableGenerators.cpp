#include "tests/model/TableGenerators.h"

#include <ostream>

namespace qir::test {

namespace {

QVariant anyValue(const PlainField &field) {
    if (field.isText())
        return QString::fromUtf8((*rc::gen::element<std::string>("", "5", "a", "A", "\u00E9")).c_str());
    return *rc::gen::element(0.0, 5.0, -1.5);
}

QVariantList anyRecord(const PlainTable &table) {
    QVariantList record;
    for (const PlainField &field : table.fields)
        record.append(anyValue(field));
    return record;
}

void change(PlainTable &table) {
    const int kind = *rc::gen::inRange(0, 7);
    if (kind < 4 && !table.records.empty() && !table.fields.empty()) {
        const int record = *rc::gen::inRange(0, table.recordCount());
        const int field = *rc::gen::inRange(0, table.fieldCount());
        table.store(record, field, anyValue(table.field(field)));
    } else if (kind == 4) {
        table.records.push_back(anyRecord(table));
    } else if (kind == 5 && !table.records.empty()) {
        table.records.pop_back();
    } else {
        table.addField(*rc::gen::arbitrary<bool>());
        for (QVariantList &record : table.records)
            record.back() = anyValue(table.fields.back());
    }
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const PlainTable &table) {
    stream << '"' << table.name.toStdString() << "\" fields";
    for (const PlainField &field : table.fields)
        stream << (field.isText() ? " text" : " double");
    for (const QVariantList &record : table.records) {
        stream << "; ";
        for (const QVariant &value : record)
            stream << '[' << value.toString().toStdString() << ']';
    }
    return stream;
}

rc::Gen<PlainTable> plainTables(std::string name) {
    return rc::gen::exec([name = std::move(name)] {
        PlainTable table(name.c_str(), *rc::gen::resize(5, rc::gen::arbitrary<std::vector<bool>>()), {});
        const int records = *rc::gen::inRange(0, 6);
        for (int r = 0; r < records; ++r)
            table.records.push_back(anyRecord(table));
        return table;
    });
}

rc::Gen<PlainTable> changedTables(PlainTable table) {
    return rc::gen::exec([table = std::move(table)] {
        PlainTable changed = table;
        const int changes = *rc::gen::inRange(0, 4);
        for (int i = 0; i < changes; ++i)
            change(changed);
        return changed;
    });
}

} // namespace qir::test
