#include "tests/component/calls/ComponentPair.h"

#include "tests/component/calls/RandomValues.h"

using namespace Qt::StringLiterals;

namespace qir::test {

namespace {

void expect(bool same, const char *what) {
    if (!same)
        throw Differs(what);
}

} // namespace

template<class OnModel, class OnDatabase>
void ComponentPair::both(OnModel onModel, OnDatabase onDatabase) {
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
    expect(modelRefused == databaseRefused, "one of the two refuses the call");
}

int ComponentPair::number(int count) {
    return m_choices.inRange(0, count + 2); // now and then out of range
}

int ComponentPair::fieldNumber() {
    return number(m_database.QirTableFieldsCount());
}

void ComponentPair::choose() {
    const QString name = m_choices.elementOf(names());
    both([&] { m_model.choose(name); }, [&] { m_database.QIRTableRecordSource(name); });
}

std::vector<QString> ComponentPair::names() {
    std::vector<QString> all;
    for (const model::Table &table : m_model.state().tables)
        all.push_back(table.name.toLower() + u" !"_s);
    all.push_back(randomName(m_choices));
    return all;
}

void ComponentPair::write() {
    const int record = number(m_database.QirTableRecordsCount());
    both([&] { m_model.point(record); }, [&] { m_database.setQIRTableRecordsPointerOut(record); });
    const int field = fieldNumber();
    const QVariant value = m_choices.yesOrNo() ? QVariant(randomText(m_choices)) : QVariant(randomNumber(m_choices));
    both([&] { m_model.write(field, value); }, [&] { m_database.QIRTableRecordSetByIndex(field, value); });
}

void ComponentPair::changeRecordsOrFields() {
    if (m_choices.yesOrNo()) {
        both([&] { m_model.addRecord(); }, [&] { m_database.AddRecord(); });
        return;
    }
    const int record = number(m_database.QirTableRecordsCount());
    both([&] { m_model.removeRecord(record); }, [&] { m_database.RemoveRecord(record); });
}

void ComponentPair::changeFields(int operation) {
    const QString name = randomName(m_choices);
    const int field = fieldNumber();
    const double size = m_choices.inRange(-2, 14) / 2.0;
    if (operation <= 16) {
        static const std::vector<int> types{1, 2, 3, 4, 7, 8, 10, 10, 6};
        const int type = m_choices.elementOf(types);
        both([&] { m_model.addField(name, type, size); }, [&] { m_database.AddField(name, type, size); });
    } else if (operation == 17) {
        both([&] { m_model.renameField(field, name); }, [&] { m_database.RenameField(field, name); });
    } else if (operation == 18) {
        both([&] { m_model.removeField(field); }, [&] { m_database.RemoveField(field); });
    } else {
        both([&] { m_model.resizeField(field, size); }, [&] { m_database.ResizeField(field, size); });
    }
}

void ComponentPair::changeTables(int operation) {
    const QString name = randomName(m_choices);
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

void ComponentPair::compareField(int place, const model::Field &field, int pointer) {
    expect(m_database.QIRTableFieldName(place) == field.name, "name of a field");
    expect(m_database.QIRTableFieldType(place) == field.type, "type of a field");
    expect(m_database.QIRTableFieldSize(place) == field.size, "size of a field");
    if (pointer > 0)
        expect(model::same(m_database.QIRTableRecordSetByIndex(place),
                           field.values[static_cast<std::size_t>(pointer) - 1]),
               "value of a field");
}

void ComponentPair::compareTable(const model::Table &table, int pointer) {
    expect(m_database.QirTableFieldsCount() == static_cast<int>(table.fields.size()), "number of fields");
    expect(m_database.QirTableRecordsCount() == table.records, "number of records");
    for (std::size_t f = 0; f < table.fields.size(); ++f)
        compareField(static_cast<int>(f) + 1, table.fields[f], pointer);
    for (int record = 1; record <= table.records; ++record) {
        m_database.GetQirRecord(record, m_texts);
        expect(m_texts.size() == static_cast<qsizetype>(table.fields.size()) + 1, "elements of a record");
        expect(m_texts.at(0).isEmpty(), "element 0 of a record");
        for (std::size_t f = 0; f < table.fields.size(); ++f)
            expect(m_texts.at(static_cast<qsizetype>(f) + 1) ==
                       model::textOf(table.fields[f].values[static_cast<std::size_t>(record) - 1]),
                   "text of a record");
    }
}

void ComponentPair::callAtRandom() {
    const int operation = m_choices.inRange(0, 26);
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

void ComponentPair::compare() {
    const model::Database::State &state = m_model.state();
    expect(m_database.QIRTablesCount() == static_cast<int>(state.tables.size()), "number of tables");
    expect(m_database.DtbHasChanged() == state.changed, "changed flag");
    expect(m_database.QIRTableRecordsPointerOut() == state.record, "current record");
    for (std::size_t i = 0; i < state.tables.size(); ++i)
        expect(m_database.QIRTableName(static_cast<int>(i) + 1) == state.tables[i].name, "name of a table");
    if (state.current >= 0)
        compareTable(state.tables[static_cast<std::size_t>(state.current)], state.record);
    else
        expect(m_database.QirTableFieldsCount() == 0 && m_database.QirTableRecordsCount() == 0,
               "counts without a table");
}

void ComponentPair::compareAll() {
    while (m_model.groups() != 0)
        both([&] { m_model.end(); }, [&] { m_database.EndChanges(); });
    for (const model::Table &table : std::vector<model::Table>(m_model.state().tables)) {
        both([&] { m_model.choose(table.name); }, [&] { m_database.QIRTableRecordSource(table.name); });
        compare();
    }
    m_database.setDtbHasChanged(false);
}

} // namespace qir::test
