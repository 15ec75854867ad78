#include "qirtbase/journal/KeptSteps.h"

#include "base/ByteReader.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"
#include "qirtbase/journal/KeptTables.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/ModelLimits.h"

#include <bit>
#include <memory>
#include <optional>
#include <utility>

namespace qir {

namespace {

/// Takes the values of a record; nothing where they are not just what its fields hold.
std::optional<std::vector<CellValue>> takeValues(QByteArrayView bytes, const Table &table) {
    ByteReader reader(bytes);
    std::vector<CellValue> values;
    for (const Field &field : table.fields()) {
        const bool isText = reader.number<std::uint8_t>() != 0;
        if (isText != field.column.isText() || !reader.isComplete())
            return std::nullopt;
        if (isText) {
            QString text;
            const auto length = readUtf8(reader.sizedBytes<std::uint32_t>(), text);
            if (!length || *length > static_cast<std::size_t>(field.size))
                return std::nullopt;
            values.emplace_back(std::move(text));
        } else {
            const auto number = reader.number<double>();
            const double fitting = fittingNumber(field.type(), number);
            if (std::bit_cast<std::uint64_t>(number) != std::bit_cast<std::uint64_t>(fitting))
                return std::nullopt;
            values.emplace_back(number);
        }
    }
    if (!reader.isComplete() || reader.left() != 0)
        return std::nullopt;
    return values;
}

class StepsReader {
public:
    StepsReader(const Database &saved, Database &database)
        : m_kept(saved)
        , m_database(database)
        , m_savedState(database.history().state()) {}

    bool read(QByteArrayView operations) {
        while (!operations.isEmpty()) {
            const auto operation = takeOperation(operations);
            if (!operation || !take(*operation))
                return false;
        }
        if (!endStep())
            return false;
        takeAllBack(); // where no mark 35 has
        while (m_database.history().done() < m_undone)
            m_database.redoStep();
        return true;
    }

private:
    bool endStep() {
        if (m_database.hasOpenGroup())
            m_database.endGroup();
        if (std::exchange(m_isAsSaved, false))
            m_database.enterState(m_savedState, m_undone > 0 ? StepKind::Undone : StepKind::Step);
        return m_parts.isEmpty();
    }
    void takeAllBack() {
        while (m_undone == 0 && m_database.history().done() > 0)
            m_database.undoStep();
    }

    bool take(const ReadOperation &operation) {
        if (isStepMark(operation))
            return beginStep(operation);
        if (!m_database.hasOpenGroup())
            return false;
        if (operation.is(JournalOperation::AsSaved)) {
            m_isAsSaved = true;
            return true;
        }
        if (operation.is(JournalOperation::ImagePart)) {
            m_parts.append(operation.bytes);
            return true;
        }
        if (!isChange(operation))
            return bringBack(operation, std::exchange(m_parts, {}));
        return m_parts.isEmpty() && applyChange(operation, m_database);
    }

    bool beginStep(const ReadOperation &operation) {
        const auto mark = stepMarkOf(operation);
        if (!endStep() || !mark || mark->kind == StepKind::Joined)
            return false;
        if (mark->kind == StepKind::Undone) {
            takeAllBack();
            ++m_undone;
        } else if (m_undone > 0) {
            return false; // those stand first
        }
        m_database.beginMarked(*mark);
        return true;
    }

    bool bringBack(const ReadOperation &operation, const QByteArray &parts) {
        if (operation.is(JournalOperation::TablesAsTheyWere))
            return tablesAsTheyWere(parts);
        if (operation.is(JournalOperation::TableBack))
            return tableBack(operation, parts);
        if (operation.table >= m_database.tableCount())
            return false;
        Table &table = m_database.table(operation.table);
        switch (static_cast<JournalOperation>(operation.kind)) {
        case JournalOperation::RecordsDropped:
            return recordsDropped(table, operation);
        case JournalOperation::RecordBack:
            return recordBack(table, operation);
        case JournalOperation::FieldBack:
            return fieldBack(table, operation, parts);
        case JournalOperation::TextsAsTheyWere:
            return textsAsTheyWere(table, operation, parts);
        case JournalOperation::TableAsItWas:
            return tableAsItWas(table, operation, parts);
        case JournalOperation::RecordsReordered:
            return reordered(table, parts);
        default:
            return false;
        }
    }

    bool recordsDropped(Table &table, const ReadOperation &operation) {
        if (operation.record > table.recordCount())
            return false;
        m_database.restore(undo::RecordsAppended{&table, operation.record});
        return true;
    }
    bool recordBack(Table &table, const ReadOperation &operation) {
        auto values = takeValues(operation.bytes, table);
        if (!values || operation.record > table.recordCount() || table.recordCount() >= limits::records)
            return false;
        m_database.restore(undo::RecordRemoved{&table, operation.record, std::move(*values)});
        return true;
    }
    bool fieldBack(Table &table, const ReadOperation &operation, const QByteArray &parts) {
        auto field = fieldIn(parts, table);
        if (!field || operation.field > table.fieldCount() || table.fieldCount() >= limits::fields ||
            table.findField(field->name.key()))
            return false;
        m_database.restore(undo::FieldRemoved{&table, operation.field, std::make_unique<Field>(std::move(*field))});
        return true;
    }
    bool textsAsTheyWere(Table &table, const ReadOperation &operation, const QByteArray &parts) {
        auto field = fieldIn(parts, table);
        if (!field || !field->column.isText() || operation.field >= table.fieldCount() ||
            !table.field(operation.field).column.isText())
            return false;
        m_database.restore(undo::FieldResized{&table, operation.field, field->size,
                                              std::make_unique<Column>(std::move(field->column))});
        return true;
    }
    bool tableAsItWas(Table &table, const ReadOperation &operation, const QByteArray &parts) {
        auto before = tableIn(parts);
        if (!before || m_database.findTable(before->name().text).value_or(operation.table) != operation.table)
            return false;
        m_database.restore(undo::TableImage{&table, std::move(before)});
        return true;
    }
    bool reordered(Table &table, const QByteArray &parts) {
        auto order = orderOf(parts, table.recordCount());
        if (!order)
            return false;
        m_database.restore(undo::RecordsReordered{&table, std::move(*order)});
        return true;
    }
    bool tableBack(const ReadOperation &operation, const QByteArray &parts) {
        auto table = tableIn(parts);
        if (!table || operation.table > m_database.tableCount() || m_database.tableCount() >= limits::tables ||
            m_database.findTable(table->name().text))
            return false;
        m_database.restore(undo::TableRemoved{operation.table, std::move(table)});
        return true;
    }
    bool tablesAsTheyWere(const QByteArray &parts) {
        auto tables = m_kept.decode(parts);
        if (!tables)
            return false;
        m_database.restore(undo::AllTables{std::move(*tables)});
        return true;
    }

    std::unique_ptr<Table> tableIn(const QByteArray &parts) {
        auto tables = m_kept.decode(parts);
        return tables && tables->size() == 1 ? std::move(tables->front()) : nullptr;
    }
    std::optional<Field> fieldIn(const QByteArray &parts, const Table &table) {
        auto alone = tableIn(parts);
        if (!alone || alone->fieldCount() != 1 || alone->recordCount() != table.recordCount())
            return std::nullopt;
        return alone->takeField(0);
    }

    KeptTablesReader m_kept;
    Database &m_database;
    std::size_t m_undone = 0; // steps that were done
    std::uint64_t m_savedState;
    bool m_isAsSaved = false; // after the step that is open
    QByteArray m_parts;
};

/// A step that says more than it takes back would change unseen what was saved.
bool isSame(const Database &saved, const Database &database) {
    if (saved.tableCount() != database.tableCount())
        return false;
    for (std::size_t i = 0; i < saved.tableCount(); ++i)
        if (encodeTable(saved.table(i), BodyFor::Journal) != encodeTable(database.table(i), BodyFor::Journal))
            return false;
    return true;
}

} // namespace

bool readKeptSteps(QByteArrayView operations, const Database &saved, Database &database) {
    return StepsReader(saved, database).read(operations) && isSame(saved, database);
}

} // namespace qir
