#include "tests/compare/PlainTables.h"

#include "db/FieldTypes.h"

#include <algorithm>
#include <ostream>

using namespace Qt::StringLiterals;

namespace qir::test {

namespace {

QVariant asVariant(const PlainValue &value) {
    if (const auto *number = std::get_if<double>(&value))
        return *number;
    return QString::fromStdString(std::get<std::string>(value));
}

rc::Gen<PlainValue> values(bool text) {
    if (text)
        return rc::gen::cast<PlainValue>(rc::gen::element<std::string>("", "5", "a", "A", "\u00E9"));
    return rc::gen::cast<PlainValue>(rc::gen::element(0.0, 5.0, -1.5));
}

std::vector<PlainValue> record(const std::vector<bool> &textFields) {
    std::vector<PlainValue> result;
    for (const bool text : textFields)
        result.push_back(*values(text));
    return result;
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const PlainTable &table) {
    stream << '"' << table.name << "\" fields";
    for (const bool text : table.textFields)
        stream << (text ? " text" : " double");
    for (const auto &values : table.records) {
        stream << "; ";
        for (const PlainValue &value : values)
            std::visit([&](const auto &held) { stream << '[' << held << ']'; }, value);
    }
    return stream;
}

QirDatabase makeDatabase(const PlainDatabase &tables) {
    QirDatabase database = QirDatabase::create();
    for (const PlainTable &table : tables) {
        const QString name = QString::fromStdString(table.name);
        database.AddTable(name);
        database.QIRTableRecordSource(name);
        database.RemoveRecord(1);
        database.RemoveField(1);
        int field = 0;
        for (const bool text : table.textFields) {
            const QString fieldName = u"F%1"_s.arg(++field);
            if (text)
                database.AddField(fieldName, static_cast<int>(FieldType::Text), 50);
            else
                database.AddField(fieldName, static_cast<int>(FieldType::Double));
        }
        int record = 0;
        for (const auto &recordValues : table.records) {
            database.AddRecord();
            database.setQIRTableRecordsPointerOut(++record);
            for (std::size_t i = 0; i < recordValues.size(); ++i)
                database.setQIRTableRecordSetByIndex(static_cast<int>(i) + 1, asVariant(recordValues[i]));
        }
    }
    return database;
}

std::set<std::pair<int, int>> naiveDifferences(const PlainTable &left, const PlainTable &right) {
    std::set<std::pair<int, int>> different;
    const std::size_t records = std::max(left.records.size(), right.records.size());
    const std::size_t fields = std::max(left.textFields.size(), right.textFields.size());
    for (std::size_t r = 0; r < records; ++r) {
        for (std::size_t f = 0; f < fields; ++f) {
            const bool inBoth = r < left.records.size() && r < right.records.size() && f < left.textFields.size() &&
                                f < right.textFields.size();
            if (!inBoth || left.records[r][f] != right.records[r][f])
                different.emplace(static_cast<int>(r) + 1, static_cast<int>(f) + 1);
        }
    }
    return different;
}

bool naivelyDiffer(const PlainTable &left, const PlainTable &right) {
    return left.records.size() != right.records.size() || left.textFields.size() != right.textFields.size() ||
           !naiveDifferences(left, right).empty();
}

std::set<std::pair<int, int>> setElements(const BitMatrix &matrix) {
    std::set<std::pair<int, int>> elements;
    for (std::size_t row = 0; row < matrix.rows(); ++row) {
        for (std::size_t column = 0; column < matrix.columns(); ++column) {
            if (matrix.at(row, column))
                elements.emplace(static_cast<int>(row), static_cast<int>(column));
        }
    }
    return elements;
}

rc::Gen<PlainTable> plainTables(std::string name) {
    return rc::gen::exec([name = std::move(name)] {
        PlainTable table;
        table.name = name;
        table.textFields = *rc::gen::resize(5, rc::gen::arbitrary<std::vector<bool>>());
        const int records = *rc::gen::inRange(0, 6);
        for (int r = 0; r < records; ++r)
            table.records.push_back(record(table.textFields));
        return table;
    });
}

rc::Gen<PlainTable> changedTables(PlainTable table) {
    return rc::gen::exec([table = std::move(table)] {
        PlainTable changed = table;
        const int changes = *rc::gen::inRange(0, 4);
        for (int i = 0; i < changes; ++i) {
            const int kind = *rc::gen::inRange(0, 7);
            if (kind < 4 && !changed.records.empty() && !changed.textFields.empty()) {
                const auto r = *rc::gen::inRange<std::size_t>(0, changed.records.size());
                const auto f = *rc::gen::inRange<std::size_t>(0, changed.textFields.size());
                changed.records[r][f] = *values(changed.textFields[f]);
            } else if (kind == 4) {
                changed.records.push_back(record(changed.textFields));
            } else if (kind == 5 && !changed.records.empty()) {
                changed.records.pop_back();
            } else {
                const bool text = *rc::gen::arbitrary<bool>();
                changed.textFields.push_back(text);
                for (auto &values : changed.records)
                    values.push_back(*test::values(text));
            }
        }
        return changed;
    });
}

} // namespace qir::test
