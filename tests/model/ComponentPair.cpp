#include "tests/model/ComponentPair.h"

#include "base/columns/ColumnBuilder.h"
#include "tests/model/RandomValues.h"
#include "tests/model/Values.h"

#include <QtEndian>

#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

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
    } catch (const Refused &) {
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
    return number(m_database->QirTableFieldsCount());
}

void ComponentPair::choose() {
    const QString name = m_choices.elementOf(names());
    both([&] { m_model.choose(name); }, [&] { m_database->QIRTableRecordSource(name); });
}

std::vector<QString> ComponentPair::names() {
    std::vector<QString> all;
    for (const PlainTable &table : m_model.state().content.tables)
        all.push_back(table.name.toLower() + u" !"_s);
    all.push_back(randomName(m_choices));
    return all;
}

void ComponentPair::write() {
    const int record = number(m_database->QirTableRecordsCount());
    both([&] { m_model.point(record); }, [&] { m_database->setQIRTableRecordsPointerOut(record); });
    const int field = fieldNumber();
    const QVariant value = m_choices.yesOrNo() ? QVariant(randomText(m_choices)) : QVariant(randomNumber(m_choices));
    both([&] { m_model.write(field, value); }, [&] { m_database->QIRTableRecordSetByIndex(field, value); });
}

void ComponentPair::writeColumn() {
    const int first = number(m_database->QirTableRecordsCount());
    const int field = fieldNumber();
    const bool isThere = field >= 1 && field <= m_database->QirTableFieldsCount();
    const auto type = columnType(isThere ? m_database->QIRTableFieldType(field) : 10).value();
    ColumnBuilder builder(type);
    QVariantList values;
    for (int i = m_choices.inRange(0, 4); i > 0; --i) {
        if (type == ColumnType::Text) {
            values += randomText(m_choices);
            builder.add(QStringView(values.last().toString()));
        } else {
            values += randomNumber(m_choices);
            builder.add(values.last().toDouble());
        }
    }
    const QVariant block = builder.take().toVariant();
    both([&] { m_model.writeColumn(field, first, values); }, [&] { m_database->WriteColumn(field, first, block); });
}

void ComponentPair::compareColumn(int place, const PlainTable &table) {
    for (int record = 1; record <= table.recordCount();) {
        const auto block = ColumnBlock::fromVariant(m_database->ReadColumn(place, record, table.recordCount()));
        if (!block)
            throw Differs(block.error().text.toStdString());
        expect(block->count() > 0, "a block");
        for (qsizetype i = 0; i < block->count(); ++i, ++record) {
            const QVariant &value = table.value(record - 1, place - 1);
            expect(block->isText() ? block->text(i) == value.toString()
                                   : std::bit_cast<std::uint64_t>(block->number(i)) ==
                                         std::bit_cast<std::uint64_t>(value.toDouble()),
                   "value of a block");
        }
    }
}

void ComponentPair::changeRecordsOrFields() {
    if (m_choices.inRange(0, 4) == 0) {
        const int count = m_choices.inRange(-1, 3);
        both([&] { m_model.appendRecords(count); }, [&] { m_database->AppendRecords(count); });
        return;
    }
    if (m_choices.yesOrNo()) {
        both([&] { m_model.addRecord(); }, [&] { m_database->AddRecord(); });
        return;
    }
    const int record = number(m_database->QirTableRecordsCount());
    both([&] { m_model.removeRecord(record); }, [&] { m_database->RemoveRecord(record); });
}

void ComponentPair::changeFields(int operation) {
    const QString name = randomName(m_choices);
    const int field = fieldNumber();
    const double size = m_choices.inRange(-2, 14) / 2.0;
    if (operation <= 16) {
        static const std::vector<int> types{1, 2, 3, 4, 7, 8, 10, 10, 6};
        const int type = m_choices.elementOf(types);
        both([&] { m_model.addField(name, type, size); }, [&] { m_database->AddField(name, type, size); });
    } else if (operation == 17) {
        both([&] { m_model.renameField(field, name); }, [&] { m_database->RenameField(field, name); });
    } else if (operation == 18) {
        both([&] { m_model.removeField(field); }, [&] { m_database->RemoveField(field); });
    } else {
        both([&] { m_model.resizeField(field, size); }, [&] { m_database->ResizeField(field, size); });
    }
}

void ComponentPair::changeTables(int operation) {
    const QString name = randomName(m_choices);
    const int table = number(m_database->QIRTablesCount());
    if (operation == 20)
        both([&] { m_model.addTable(name); }, [&] { m_database->AddTable(name); });
    else if (operation == 21)
        both([&] { m_model.renameTable(table, name); }, [&] { m_database->RenameTable(table, name); });
    else if (operation == 22)
        both([&] { m_model.removeTable(table); }, [&] { m_database->RemoveTable(table); });
    else if (operation == 23)
        both([&] { m_model.begin(); }, [&] { m_database->BeginChanges(); });
    else if (operation == 24)
        both([&] { m_model.end(); }, [&] { m_database->EndChanges(); });
    else
        both([&] { m_model.cancel(); }, [&] { m_database->CancelChanges(); });
}

void ComponentPair::compareField(int place, const PlainTable &table, int pointer) {
    const PlainField &field = table.field(place - 1);
    expect(m_database->QIRTableFieldName(place) == field.name, "name of a field");
    expect(m_database->QIRTableFieldType(place) == field.type, "type of a field");
    expect(m_database->QIRTableFieldSize(place) == field.size, "size of a field");
    if (pointer > 0)
        expect(identical(m_database->QIRTableRecordSetByIndex(place), table.value(pointer - 1, place - 1)),
               "value of a field");
}

void ComponentPair::compareTable(const PlainTable &table, int pointer) {
    expect(m_database->QirTableFieldsCount() == table.fieldCount(), "number of fields");
    expect(m_database->QirTableRecordsCount() == table.recordCount(), "number of records");
    for (int place = 1; place <= table.fieldCount(); ++place)
        compareField(place, table, pointer);
    for (int place = 1; place <= table.fieldCount(); ++place)
        compareColumn(place, table);
    int record = 0;
    for (const QStringList &texts : table.texts()) {
        m_database->GetQirRecord(++record, m_texts);
        expect(m_texts == QStringList{QString()} + texts, "texts of a record");
    }
}

void ComponentPair::callAtRandom() {
    const int operation = m_choices.inRange(0, 26);
    if (operation < 14 && m_model.state().content.tableCount() > 0 && m_model.state().current < 0)
        choose();
    if (operation < 7)
        write();
    else if (operation < 10)
        writeColumn();
    else if (operation < 14)
        changeRecordsOrFields();
    else if (operation < 20)
        changeFields(operation);
    else
        changeTables(operation);
}

void ComponentPair::compare() {
    const ComponentModel::State &state = m_model.state();
    expect(m_database->QIRTablesCount() == state.content.tableCount(), "number of tables");
    expect(m_database->DtbHasChanged() == state.changed, "changed flag");
    expect(m_database->QIRTableRecordsPointerOut() == state.record, "current record");
    compareSteps();
    for (int t = 0; t < state.content.tableCount(); ++t)
        expect(m_database->QIRTableName(t + 1) == state.content.table(t).name, "name of a table");
    if (state.current >= 0)
        compareTable(state.content.table(state.current), state.record);
    else
        expect(m_database->QirTableFieldsCount() == 0 && m_database->QirTableRecordsCount() == 0,
               "counts without a table");
}

void ComponentPair::compareSteps() {
    expect(m_database->StepsCount() == static_cast<int>(m_model.steps().size()), "number of steps");
    expect(m_database->StepsDone() == m_model.stepsDone(), "number of steps that are done");
    expect(m_database->UndoName() == m_model.undoName(), "name of the step to undo");
    expect(m_database->RedoName() == m_model.redoName(), "name of the step to make again");
}

/// A command that fails in its middle: what it has written is undone, and it is no step.
void ComponentPair::failedCommand() {
    endGroups();
    both([&] { m_model.beginStep(u"failed"_s, {}); }, [&] { m_database->BeginStep(u"failed"_s, {}); });
    both([&] { m_model.begin(); }, [&] { m_database->BeginChanges(); });
    for (int calls = m_choices.inRange(1, 4); calls > 0; --calls)
        write();
    if (m_choices.inRange(0, 4) == 0)
        for (int calls = 0; calls < 200; ++calls) // more than single changes are kept of
            write();
    both([&] { m_model.cancel(); }, [&] { m_database->CancelChanges(); });
    both([&] { m_model.endStep(); }, [&] { m_database->EndStep(); });
}

/// Keystrokes in one cell after which it is what it was before.
void ComponentPair::typeAndTakeBack() {
    endGroups();
    const int record = number(m_database->QirTableRecordsCount());
    const int field = fieldNumber();
    const auto type = [&](const QVariant &value) {
        both([&] { m_model.beginStep(u"typed"_s, u"cell"_s); }, [&] { m_database->BeginStep(u"typed"_s, u"cell"_s); });
        both([&] { m_model.point(record); }, [&] { m_database->setQIRTableRecordsPointerOut(record); });
        both([&] { m_model.write(field, value); }, [&] { m_database->QIRTableRecordSetByIndex(field, value); });
        both([&] { m_model.endStep(); }, [&] { m_database->EndStep(); });
    };
    type(u"1"_s);
    type(u"12"_s);
    type(u"1"_s);
}

/// The records in another order, which the component is told of, now and then wrongly.
void ComponentPair::sort() {
    endGroups();
    const int current = m_model.state().current;
    if (current < 0 || m_model.state().content.table(current).recordCount() == 0)
        return;
    constexpr int leastForAnOrder = 70; // fewer values of a column are kept one by one
    if (const int records = m_model.state().content.table(current).recordCount();
        records < leastForAnOrder && m_choices.inRange(0, 3) == 0)
        both([&] { m_model.appendRecords(leastForAnOrder - records); },
             [&] { m_database->AppendRecords(leastForAnOrder - records); });
    const PlainTable before = m_model.state().content.table(current);
    std::vector<std::uint32_t> order(static_cast<std::size_t>(before.recordCount()));
    std::iota(order.begin(), order.end(), 0U);
    const auto swapSome = [&](int times) {
        for (; times > 0; --times)
            std::swap(order[static_cast<std::size_t>(m_choices.inRange(0, before.recordCount()))],
                      order[static_cast<std::size_t>(m_choices.inRange(0, before.recordCount()))]);
    };
    swapSome(m_choices.inRange(1, 20));
    both([&] { m_model.beginStep(u"sorted"_s, {}); }, [&] { m_database->BeginStep(u"sorted"_s, {}); });
    both([&] { m_model.begin(); }, [&] { m_database->BeginChanges(); });
    for (int field = 1; field <= before.fieldCount(); ++field) {
        QVariantList values;
        ColumnBuilder builder(columnType(before.field(field - 1).type).value());
        for (const std::uint32_t record : order) {
            values += before.value(static_cast<int>(record), field - 1);
            if (values.last().typeId() == QMetaType::QString)
                builder.add(QStringView(values.last().toString()));
            else
                builder.add(values.last().toDouble());
        }
        const QVariant block = builder.take().toVariant();
        both([&] { m_model.writeColumn(field, 1, values); }, [&] { m_database->WriteColumn(field, 1, block); });
    }
    both([&] { m_model.end(); }, [&] { m_database->EndChanges(); });
    swapSome(m_choices.inRange(0, 4) == 0 ? 1 : 0);
    QByteArray bytes(static_cast<qsizetype>(order.size() * sizeof order.front()), Qt::Uninitialized);
    qToLittleEndian<std::uint32_t>(order.data(), static_cast<qsizetype>(order.size()), bytes.data());
    m_database->RecordsReordered(bytes);
    both([&] { m_model.endStep(); }, [&] { m_database->EndStep(); });
}

void ComponentPair::stepAtRandom() {
    switch (m_choices.inRange(0, 12)) {
    case 10:
    case 11:
        sort();
        break;
    case 8:
        failedCommand();
        break;
    case 9:
        typeAndTakeBack();
        break;
    case 0: {
        const QString name = randomName(m_choices);
        const QString key = m_choices.yesOrNo() ? u"key %1"_s.arg(m_choices.inRange(0, 2)) : QString();
        both([&] { m_model.beginStep(name, key); }, [&] { m_database->BeginStep(name, key); });
        break;
    }
    case 1:
    case 2:
        both([&] { m_model.endStep(); }, [&] { m_database->EndStep(); });
        break;
    case 3:
    case 4:
        both([&] { m_model.undo(); }, [&] { m_database->Undo(); });
        break;
    case 5:
    case 6:
        both([&] { m_model.redo(); }, [&] { m_database->Redo(); });
        break;
    default: {
        const int done = m_model.stepsDone() + m_choices.inRange(-3, 4);
        both([&] { m_model.goTo(done); }, [&] { m_database->GoToStep(done); });
    }
    }
}

void ComponentPair::save() {
    both([&] { m_model.save(); }, [&] { m_database->SaveDtb(); });
}

void ComponentPair::revert() {
    both([&] { m_model.revert(u"Revert"_s); }, [&] { m_database->RevertToSaved(u"Revert"_s); });
}

void ComponentPair::passwordAtRandom() {
    static const std::vector<QString> words{QString(), u"word"_s, u"another"_s};
    const QString current = m_choices.inRange(0, 4) == 0 ? m_choices.elementOf(words) : m_model.password();
    const QString replacement = m_choices.elementOf(words);
    both([&] { m_model.newPassword(current, replacement); }, [&] { m_database->NewPassword(current, replacement); });
}

void ComponentPair::setPassword(const QString &password) {
    const QString current = m_model.password();
    both([&] { m_model.newPassword(current, password); }, [&] { m_database->NewPassword(current, password); });
}

void ComponentPair::recovered(clsQirDatabase &database) {
    m_own.reset();
    m_database = &database;
    m_model.recover();
}

void ComponentPair::reopened(clsQirDatabase &database) {
    m_model.forgetSteps();
    recovered(database);
}

void ComponentPair::undoAll() {
    endGroups();
    both([&] { m_model.goTo(0); }, [&] { m_database->GoToStep(0); });
}

void ComponentPair::endGroups() {
    while (m_model.groups() != 0) {
        both([&] { m_model.endStep(); }, [&] { m_database->EndStep(); });
        if (m_model.groups() != 0)
            both([&] { m_model.end(); }, [&] { m_database->EndChanges(); });
    }
}

void ComponentPair::compareAll() {
    endGroups();
    for (const PlainTable &table : PlainDatabase(m_model.state().content).tables) {
        both([&] { m_model.choose(table.name); }, [&] { m_database->QIRTableRecordSource(table.name); });
        compare();
    }
}

} // namespace qir::test
