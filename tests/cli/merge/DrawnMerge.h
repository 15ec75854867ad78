#pragma once

#include "cli/git/Content.h"

#include <algorithm>
#include <random>

namespace qir::test {

using namespace Qt::StringLiterals;

inline const QVariant nothing;

struct Side {
    const TableContent *table;

    bool has(const QString &field) const { return find(field) >= 0; }
    int find(const QString &field) const {
        for (std::size_t i = 0; table != nullptr && i < table->fields.size(); ++i)
            if (table->fields[i].name == field)
                return static_cast<int>(i);
        return -1;
    }
    QString header(const QString &field) const {
        const FieldInfo &info = table->fields[static_cast<std::size_t>(find(field))];
        return u"%1 %2"_s.arg(static_cast<int>(info.type)).arg(info.size);
    }
    QVariant value(std::size_t record, const QString &field) const {
        const int place = find(field);
        return place < 0 || record >= table->records.size() ? nothing
                                                            : table->records[record][static_cast<std::size_t>(place)];
    }
};

inline QString show(const QVariant &value) {
    if (!value.isValid())
        return u"-"_s;
    return value.typeId() == QMetaType::QString ? u"t"_s + value.toString() : u"n%1"_s.arg(value.toDouble());
}

/// Draws databases and what becomes of them.
class Drawing {
public:
    explicit Drawing(std::uint64_t seed)
        : m_random(seed) {}

    int below(int end) { return std::uniform_int_distribution(0, end - 1)(m_random); }

    DatabaseContent database() {
        DatabaseContent content;
        for (const QString &name : {u"A"_s, u"B"_s})
            if (below(4) > 0)
                content.tables.push_back(table(name));
        return content;
    }

    void edit(DatabaseContent &content) {
        if (content.tables.empty() || below(12) == 0) {
            editTables(content);
            return;
        }
        TableContent &table = content.tables[place(content.tables.size())];
        switch (below(10)) {
        case 0:
            editFields(table);
            break;
        case 1:
        case 2:
            table.records.push_back(record(table));
            break;
        case 3:
            if (!table.records.empty())
                table.records.erase(table.records.begin() + below(static_cast<int>(table.records.size())));
            break;
        case 4:
            table.records.insert(table.records.begin() + below(static_cast<int>(table.records.size()) + 1),
                                 record(table));
            break;
        default:
            if (!table.records.empty() && !table.fields.empty()) {
                const std::size_t field = place(table.fields.size());
                table.records[place(table.records.size())][field] = value(table.fields[field]);
            }
        }
    }

private:
    std::size_t place(std::size_t size) { return static_cast<std::size_t>(below(static_cast<int>(size))); }

    QVariant value(const FieldInfo &field) {
        if (field.type != FieldType::Text)
            return static_cast<double>(below(4));
        return QString(u"abc"_s.first(below(4))).left(field.size);
    }
    RecordValues record(const TableContent &table) {
        RecordValues values;
        for (const FieldInfo &field : table.fields)
            values.push_back(value(field));
        return values;
    }
    FieldInfo field(const QString &name) {
        const bool isText = below(2) == 0;
        return {name, isText ? FieldType::Text : FieldType::Long, isText ? 1 + below(3) : 0};
    }
    TableContent table(const QString &name) {
        TableContent table{name, {{u"Id"_s, FieldType::Long, 0}, field(u"X"_s), field(u"Y"_s)}, {}};
        for (int i = below(5); i > 0; --i) {
            table.records.push_back(record(table));
            if (below(4) > 0) // mostly a key
                table.records.back()[0] = static_cast<double>(table.records.size() + 3);
        }
        return table;
    }

    void editTables(DatabaseContent &content) {
        if (!content.tables.empty() && below(2) == 0) {
            content.tables.erase(content.tables.begin() + below(static_cast<int>(content.tables.size())));
            return;
        }
        for (const QString &name : {u"A"_s, u"B"_s, u"C"_s})
            if (TablesByName(content).find(name) == nullptr && below(2) == 0) {
                content.tables.push_back(table(name));
                return;
            }
    }

    void editFields(TableContent &table) {
        const int kind = below(3);
        if (kind == 0 || table.fields.empty()) {
            for (const QString &name : {u"Id"_s, u"X"_s, u"Y"_s, u"Z"_s, u"W"_s}) {
                if (Side{&table}.has(name) || below(2) == 0)
                    continue;
                table.fields.push_back(field(name));
                for (RecordValues &values : table.records)
                    values.push_back(below(2) == 0                                 ? value(table.fields.back())
                                     : table.fields.back().type == FieldType::Text ? QVariant(QString())
                                                                                   : QVariant(0.0));
                return;
            }
            return;
        }
        const std::size_t at = place(table.fields.size());
        if (kind == 1) {
            table.fields.erase(table.fields.begin() + static_cast<std::ptrdiff_t>(at));
            for (RecordValues &values : table.records)
                values.erase(values.begin() + static_cast<std::ptrdiff_t>(at));
            return;
        }
        table.fields[at] = field(table.fields[at].name);
        for (RecordValues &values : table.records) {
            const FieldInfo &now = table.fields[at];
            const QString text = show(values[at]).mid(1);
            values[at] = now.type == FieldType::Text ? QVariant(text.left(now.size)) : QVariant(text.toDouble());
        }
    }

    std::mt19937_64 m_random;
};

inline QString shown(const DatabaseContent &content) {
    QString text;
    for (const TableContent &table : content.tables) {
        text += u"  %1:"_s.arg(table.name);
        for (const FieldInfo &field : table.fields)
            text += u" %1[%2:%3]"_s.arg(field.name).arg(static_cast<int>(field.type)).arg(field.size);
        text += u'\n';
        for (const RecordValues &values : table.records) {
            text += u"   "_s;
            for (const QVariant &value : values)
                text += u' ' + show(value);
            text += u'\n';
        }
    }
    return text;
}

} // namespace qir::test
