#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "qirtbase/clsQirDatabase.h"
#include "tests/component/DatabaseTestSupport.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

/// The rules of the component once more, on plain lists of variants, without any thought of speed.
namespace model {

struct Refused : std::runtime_error {
    Refused()
        : std::runtime_error("refused") {}
};

void require(bool condition) {
    if (!condition)
        throw Refused();
}

struct Field {
    QString name;
    int type;
    int size;
    std::vector<QVariant> values;
};

struct Table {
    QString name;
    int records;
    std::vector<Field> fields;
};

QString keyOf(QString name) {
    name = name.trimmed();
    while (name.contains(u" ?"_s) || name.contains(u" !"_s))
        name.remove(u" ?"_s).remove(u" !"_s);
    return name.trimmed().toUpper();
}

QString cut(const QString &text, int size) {
    QList<uint> points = text.toUcs4(); // gives U+FFFD for lone surrogates
    points.resize(std::min<qsizetype>(points.size(), size));
    QString result;
    for (const uint point : points)
        result += QStringView(QChar::fromUcs4(point)).toString();
    return result;
}

QVariant converted(const Field &field, const QVariant &value) {
    const bool isText = value.typeId() == QMetaType::QString;
    constexpr double largest = std::numeric_limits<double>::max();
    if (field.type == 10) {
        const double number = std::isnan(value.toDouble()) ? 0 : std::clamp(value.toDouble(), -largest, largest);
        return cut(isText ? value.toString() : numberText(number), field.size);
    }
    double number = isText ? leadingNumber(value.toString()) : value.toDouble();
    if (std::isnan(number))
        number = 0;
    const auto whole = [&](double least, double most) {
        return static_cast<int>(std::rint(std::clamp(number, least, most)));
    };
    switch (field.type) {
    case 1:
        return number != 0 ? 1 : 0;
    case 2:
        return whole(0, 255);
    case 3:
        return whole(-32768, 32767);
    case 4:
        return whole(-2147483648.0, 2147483647.0);
    default:
        return std::clamp(number, -largest, largest);
    }
}

bool same(const QVariant &left, const QVariant &right) {
    if (left.typeId() != right.typeId())
        return false;
    if (left.typeId() == QMetaType::Double)
        return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
    return left == right;
}

QString textOf(const QVariant &value) {
    return value.typeId() == QMetaType::Double ? numberText(value.toDouble()) : value.toString();
}

int fittingSize(int type, double size) {
    return type == 10 ? static_cast<int>(std::rint(std::clamp(size, 0.0, 65535.0))) : 0;
}

class Database {
public:
    struct State {
        std::vector<Table> tables;
        int current = -1; // index of a table
        int record = 0;
        bool changed = false;
        bool failed = false; // of the group that began with this state
    };

    const State &state() const { return m_state; }
    std::size_t groups() const { return m_groups.size(); }
    /// The component raised an error.
    void fail() {
        for (State &group : m_groups)
            group.failed = true;
    }

    void addTable(const QString &name) {
        requireNewTable(name, -1);
        m_state.tables.push_back({cut(name, 255), 1, {}});
        m_state.tables.back().fields.push_back({u"Field1"_s, 10, 50, {u""_s}});
        m_state.changed = true;
    }
    void renameTable(int number, const QString &name) {
        const int index = tableAt(number);
        requireNewTable(name, index);
        assign(m_state.tables[index].name, name);
    }
    void removeTable(int number) {
        const int index = tableAt(number);
        m_state.tables.erase(m_state.tables.begin() + index);
        if (m_state.current == index) {
            m_state.current = -1;
            m_state.record = 0;
        } else if (m_state.current > index) {
            --m_state.current;
        }
        m_state.changed = true;
    }
    void choose(const QString &name) {
        const int index = find(m_state.tables, name);
        require(index >= 0);
        m_state.current = index;
        m_state.record = 0;
    }
    void addField(const QString &name, int type, double size) {
        Table &table = current();
        require(QList<int>{1, 2, 3, 4, 7, 8, 10}.contains(type));
        requireNewField(table, name, -1);
        const QVariant empty = type == 10 ? QVariant(u""_s) : type >= 7 ? QVariant(0.0) : QVariant(0);
        table.fields.push_back({name, type, fittingSize(type, size),
                                std::vector<QVariant>(static_cast<std::size_t>(table.records), empty)});
        m_state.changed = true;
    }
    void renameField(int number, const QString &name) {
        Field &field = fieldAt(number);
        requireNewField(current(), name, number - 1);
        assign(field.name, name);
    }
    void removeField(int number) {
        fieldAt(number);
        current().fields.erase(current().fields.begin() + number - 1);
        m_state.changed = true;
    }
    void resizeField(int number, double size) {
        Field &field = fieldAt(number);
        if (fittingSize(field.type, size) == field.size)
            return;
        field.size = fittingSize(field.type, size);
        for (QVariant &value : field.values)
            value = cut(value.toString(), field.size);
        m_state.changed = true;
    }
    void addRecord() {
        Table &table = current();
        ++table.records;
        for (Field &field : table.fields)
            field.values.push_back(field.type == 10 ? QVariant(u""_s) : field.type >= 7 ? QVariant(0.0) : QVariant(0));
        m_state.changed = true;
    }
    void removeRecord(int number) {
        Table &table = current();
        require(number >= 1 && number <= table.records);
        --table.records;
        for (Field &field : table.fields)
            field.values.erase(field.values.begin() + number - 1);
        if (m_state.record == number)
            m_state.record = 0;
        else if (m_state.record > number)
            --m_state.record;
        m_state.changed = true;
    }
    void point(int number) {
        require(number >= 0 && number <= current().records);
        m_state.record = number;
    }
    void write(int number, const QVariant &value) {
        Field &field = fieldAt(number);
        require(m_state.record > 0);
        QVariant &target = field.values[static_cast<std::size_t>(m_state.record) - 1];
        const QVariant fitting = converted(field, value);
        if (same(target, fitting))
            return;
        target = fitting;
        m_state.changed = true;
    }
    void begin() {
        m_groups.push_back(m_state);
        m_groups.back().failed = false;
    }
    void end() {
        require(!m_groups.empty());
        if (m_groups.back().failed)
            cancel();
        else
            m_groups.pop_back();
    }
    void cancel() {
        require(!m_groups.empty());
        m_state = m_groups.back();
        m_groups.pop_back();
    }

private:
    template<class Named>
    static int find(const std::vector<Named> &items, const QString &name) {
        const auto found = std::find_if(items.begin(), items.end(),
                                        [&](const Named &item) { return keyOf(item.name) == keyOf(name); });
        return found == items.end() ? -1 : static_cast<int>(found - items.begin());
    }
    void requireNewTable(const QString &name, int except) const {
        const int found = find(m_state.tables, name);
        require(!keyOf(name).isEmpty() && (found < 0 || found == except));
    }
    static void requireNewField(const Table &table, const QString &name, int except) {
        const int found = find(table.fields, name);
        require(!keyOf(name).isEmpty() && (found < 0 || found == except));
    }
    void assign(QString &target, const QString &name) {
        if (target != name)
            m_state.changed = true;
        target = name;
    }
    int tableAt(int number) const {
        require(number >= 1 && number <= static_cast<int>(m_state.tables.size()));
        return number - 1;
    }
    Table &current() {
        require(m_state.current >= 0);
        return m_state.tables[static_cast<std::size_t>(m_state.current)];
    }
    Field &fieldAt(int number) {
        require(number >= 1 && number <= static_cast<int>(current().fields.size()));
        return current().fields[static_cast<std::size_t>(number) - 1];
    }

    State m_state;
    std::vector<State> m_groups;
};

} // namespace model

/// One call drawn at random, made on both sides; both carry it out or both refuse.
class Pair {
public:
    void callAtRandom() {
        const int operation = *rc::gen::inRange(0, 26);
        if (operation < 14 && !m_model.state().tables.empty() && m_model.state().current < 0)
            choose();
        if (operation < 10)
            write();
        else if (operation < 14)
            changeRecordsOrFields();
        else if (operation < 20)
            changeFields(operation);
        else
            changeTables(operation);
    }

    void compare() {
        const model::Database::State &state = m_model.state();
        RC_ASSERT(m_database.QIRTablesCount() == static_cast<int>(state.tables.size()));
        RC_ASSERT(m_database.DtbHasChanged() == state.changed);
        RC_ASSERT(m_database.QIRTableRecordsPointerOut() == state.record);
        for (std::size_t i = 0; i < state.tables.size(); ++i)
            RC_ASSERT(m_database.QIRTableName(static_cast<int>(i) + 1) == state.tables[i].name);
        if (state.current >= 0)
            compareTable(state.tables[static_cast<std::size_t>(state.current)], state.record);
        else
            RC_ASSERT(m_database.QirTableFieldsCount() == 0 && m_database.QirTableRecordsCount() == 0);
    }

    /// Every table, after the calls; ends all groups.
    void compareAll() {
        while (m_model.groups() != 0)
            both([&] { m_model.end(); }, [&] { m_database.EndChanges(); });
        for (const model::Table &table : std::vector<model::Table>(m_model.state().tables)) {
            both([&] { m_model.choose(table.name); }, [&] { m_database.QIRTableRecordSource(table.name); });
            compare();
        }
        m_database.setDtbHasChanged(false);
    }

private:
    template<class OnModel, class OnDatabase>
    void both(OnModel onModel, OnDatabase onDatabase) {
        bool modelRefused = false;
        bool databaseRefused = false;
        try {
            onModel();
        } catch (const model::Refused &) {
            modelRefused = true;
            m_model.fail();
        }
        try {
            onDatabase();
        } catch (const std::exception &) {
            databaseRefused = true;
        }
        RC_ASSERT(modelRefused == databaseRefused);
    }

    static int number(int count) { return *rc::gen::inRange(0, count + 2); } // now and then out of range
    int fieldNumber() { return number(m_database.QirTableFieldsCount()); }

    void choose() {
        const QString name = *rc::gen::elementOf(names());
        both([&] { m_model.choose(name); }, [&] { m_database.QIRTableRecordSource(name); });
    }
    std::vector<QString> names() {
        std::vector<QString> all;
        for (const model::Table &table : m_model.state().tables)
            all.push_back(table.name.toLower() + u" !"_s);
        all.push_back(test::randomName());
        return all;
    }
    void write() {
        const int record = number(m_database.QirTableRecordsCount());
        both([&] { m_model.point(record); }, [&] { m_database.setQIRTableRecordsPointerOut(record); });
        const int field = fieldNumber();
        const QVariant value =
            *rc::gen::arbitrary<bool>() ? QVariant(test::randomText()) : QVariant(test::randomNumber());
        both([&] { m_model.write(field, value); }, [&] { m_database.QIRTableRecordSetByIndex(field, value); });
    }
    void changeRecordsOrFields() {
        if (*rc::gen::arbitrary<bool>()) {
            both([&] { m_model.addRecord(); }, [&] { m_database.AddRecord(); });
            return;
        }
        const int record = number(m_database.QirTableRecordsCount());
        both([&] { m_model.removeRecord(record); }, [&] { m_database.RemoveRecord(record); });
    }
    void changeFields(int operation) {
        const QString name = test::randomName();
        const int field = fieldNumber();
        const double size = *rc::gen::inRange(-2, 14) / 2.0;
        if (operation <= 16) {
            const int type = *rc::gen::element(1, 2, 3, 4, 7, 8, 10, 10, 6);
            both([&] { m_model.addField(name, type, size); }, [&] { m_database.AddField(name, type, size); });
        } else if (operation == 17) {
            both([&] { m_model.renameField(field, name); }, [&] { m_database.RenameField(field, name); });
        } else if (operation == 18) {
            both([&] { m_model.removeField(field); }, [&] { m_database.RemoveField(field); });
        } else {
            both([&] { m_model.resizeField(field, size); }, [&] { m_database.ResizeField(field, size); });
        }
    }
    void changeTables(int operation) {
        const QString name = test::randomName();
        const int table = number(m_database.QIRTablesCount());
        if (operation == 20)
            both([&] { m_model.addTable(name); }, [&] { m_database.AddTable(name); });
        else if (operation == 21)
            both([&] { m_model.renameTable(table, name); }, [&] { m_database.RenameTable(table, name); });
        else if (operation == 22)
            both([&] { m_model.removeTable(table); }, [&] { m_database.RemoveTable(table); });
        else if (operation == 23)
            both([&] { m_model.begin(); }, [&] { m_database.BeginChanges(); });
        else if (operation == 24)
            both([&] { m_model.end(); }, [&] { m_database.EndChanges(); });
        else
            both([&] { m_model.cancel(); }, [&] { m_database.CancelChanges(); });
    }
    void compareTable(const model::Table &table, int pointer) {
        RC_ASSERT(m_database.QirTableFieldsCount() == static_cast<int>(table.fields.size()));
        RC_ASSERT(m_database.QirTableRecordsCount() == table.records);
        for (int f = 1; f <= static_cast<int>(table.fields.size()); ++f) {
            const model::Field &field = table.fields[static_cast<std::size_t>(f) - 1];
            RC_ASSERT(m_database.QIRTableFieldName(f) == field.name);
            RC_ASSERT(m_database.QIRTableFieldType(f) == field.type);
            RC_ASSERT(m_database.QIRTableFieldSize(f) == field.size);
            if (pointer > 0)
                RC_ASSERT(model::same(m_database.QIRTableRecordSetByIndex(f),
                                      field.values[static_cast<std::size_t>(pointer) - 1]));
        }
        for (int record = 1; record <= table.records; ++record) {
            m_database.GetQirRecord(record, m_texts);
            RC_ASSERT(m_texts.size() == static_cast<qsizetype>(table.fields.size()) + 1);
            RC_ASSERT(m_texts.at(0).isEmpty());
            for (std::size_t f = 0; f < table.fields.size(); ++f)
                RC_ASSERT(m_texts.at(static_cast<qsizetype>(f) + 1) ==
                          model::textOf(table.fields[f].values[static_cast<std::size_t>(record) - 1]));
        }
    }

    model::Database m_model;
    clsQirDatabase m_database;
    QStringList m_texts;
};

RC_GTEST_PROP(ComponentProperty, AnyCallsDoWhatAPlainModelOfTheRulesDoes, ()) {
    Pair pair;
    const int calls = *rc::gen::inRange(0, 150);
    for (int i = 0; i < calls; ++i) {
        pair.callAtRandom();
        pair.compare();
    }
    pair.compareAll();
}

} // namespace
