#include "cli/diff/Patch.h"

#include "base/Collation.h"
#include "compare/report/JsonLines.h"
#include "db/FieldTypes.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

FieldInfo fieldInfo(const QJsonValue &value) {
    const QJsonObject object = value.toObject();
    const QString type = jsonText(jsonMember(object, u"type"_s));
    const auto found = std::ranges::find_if(
        fieldTypeNames, [&](const FieldTypeName &known) { return type == QLatin1StringView(known.name); });
    if (found == fieldTypeNames.end())
        throw BadLine(u"there is no type \"%1\""_s.arg(type));
    return {jsonText(jsonMember(object, u"name"_s)), found->code, jsonWholeNumber(jsonMember(object, u"size"_s), 0)};
}

std::vector<FieldInfo> fieldInfos(const QJsonValue &value) {
    std::vector<FieldInfo> fields;
    for (const QJsonValue element : jsonArray(value))
        fields.push_back(fieldInfo(element));
    return fields;
}

std::pair<QJsonValue, QJsonValue> pair(const QJsonValue &value) {
    const QJsonArray both = jsonArray(value);
    if (both.size() != 2)
        throw BadLine(u"an array of two is missing"_s);
    return {both[0], both[1]};
}

class PatchReader {
public:
    /// Takes one line. Throws BadLine.
    void take(const QJsonObject &line) {
        if (!m_begun) {
            if (line.value(u"patch"_s).toInt() != 1)
                throw BadLine(u"it is no patch: its first line is not {\"patch\": 1}"_s);
            if (line.contains(u"tables"_s))
                m_tableCount = static_cast<std::size_t>(jsonWholeNumber(line.value(u"tables"_s), 0));
            m_begun = true;
        } else if (line.contains(u"state"_s)) {
            takeTable(line);
        } else if (line.contains(u"change"_s)) {
            takeRecord(line);
        } else if (!line.contains(u"duplicate"_s)) {
            takeCell(line);
        }
    }
    /// The whole of it, once all lines are taken. Throws BadLine where some are missing: what wrote them may have been
    /// cut off.
    Patch finish() {
        if (!m_begun)
            throw BadLine(u"it is no patch: it is empty"_s);
        if (m_tableCount && *m_tableCount != m_patch.size())
            throw BadLine(u"it is cut short: not all of its tables are there"_s);
        for (std::size_t i = 0; i < m_patch.size(); ++i)
            if (m_expected[i] != Changes::in(m_patch[i])) {
                const PatchTable &table = m_patch[i];
                throw BadLine(u"it is cut short: not all changes of the table \"%1\" are there"_s.arg(
                    table.leftName.isEmpty() ? table.rightName : table.leftName));
            }
        return std::move(m_patch);
    }

private:
    /// How many changes a table has: what its line says, and what there is.
    struct Changes {
        qint64 cells = 0; ///< By position, and those of changed records.
        qint64 added = 0;
        qint64 removed = 0;
        qint64 values = 0; ///< In fields that one side has.

        bool operator==(const Changes &) const = default;

        static Changes in(const PatchTable &table) {
            Changes changes;
            changes.cells = static_cast<qint64>(table.cells.size());
            for (const PatchRecord &record : table.records)
                ++(changes.*memberOf(record.action));
            return changes;
        }
        static qint64 Changes::*memberOf(PatchAction action) {
            switch (action) {
            case PatchAction::Added:
                return &Changes::added;
            case PatchAction::Removed:
                return &Changes::removed;
            case PatchAction::Changed:
                return &Changes::cells;
            case PatchAction::Field:
                break;
            }
            return &Changes::values;
        }
        static Changes toldBy(const QJsonObject &line, const PatchTable &table) {
            Changes changes;
            if (!table.hasFields)
                return changes;
            const auto leftFields = static_cast<qint64>(table.leftFields.size());
            const auto rightFields = static_cast<qint64>(table.rightFields.size());
            const auto count = [&line](const QString &name) { return jsonWholeNumber(jsonMember(line, name), 0); };
            if (table.leftName.isEmpty() || table.rightName.isEmpty()) { // all cells of it
                changes.cells = table.leftRecords * leftFields + table.rightRecords * rightFields;
                return changes;
            }
            if (line.contains(u"cells"_s))
                changes.cells = count(u"cells"_s);
            if (table.key.isEmpty())
                return changes;
            changes.added = count(u"added"_s);
            changes.removed = count(u"removed"_s);
            changes.cells -= changes.added * rightFields + changes.removed * leftFields;
            const qint64 oneSided = jsonArray(jsonMember(line, u"fieldsLeft"_s)).size() +
                                    jsonArray(jsonMember(line, u"fieldsRight"_s)).size();
            changes.values = (table.leftRecords - changes.removed) * oneSided;
            return changes;
        }
    };

    void takeTable(const QJsonObject &line) {
        PatchTable table;
        const QString name = jsonText(jsonMember(line, u"table"_s));
        const QString state = jsonText(jsonMember(line, u"state"_s));
        if (!QStringList{u"left"_s, u"right"_s, u"same"_s, u"different"_s}.contains(state))
            throw BadLine(u"there is no state \"%1\""_s.arg(state));
        table.leftName = state == u"right"_s ? QString() : name;
        table.rightName = state == u"left"_s ? QString() : name;
        table.hasFields = line.contains(u"leftFields"_s);
        if (table.hasFields) {
            table.leftFields = fieldInfos(line.value(u"leftFields"_s));
            table.rightFields = fieldInfos(jsonMember(line, u"rightFields"_s));
            const auto [left, right] = pair(jsonMember(line, u"records"_s));
            table.leftRecords = jsonWholeNumber(left, 0);
            table.rightRecords = jsonWholeNumber(right, 0);
        } else if (state != u"same"_s) {
            throw BadLine(u"it has no \"leftFields\": the output of --patch has"_s);
        }
        if (line.contains(u"names"_s)) {
            const auto [left, right] = pair(line.value(u"names"_s));
            table.leftName = jsonText(left);
            table.rightName = jsonText(right);
        }
        if (line.contains(u"key"_s)) {
            for (const QJsonValue field : jsonArray(line.value(u"key"_s)))
                table.key += jsonText(field);
        }
        if (m_tables.contains(collationKey(name)))
            throw BadLine(u"the table \"%1\" is there twice"_s.arg(name));
        m_tables.insert(collationKey(name), m_patch.size());
        m_expected.push_back(Changes::toldBy(line, table));
        m_patch.push_back(std::move(table));
    }

    PatchTable &tableOf(const QJsonObject &line) {
        const QString name = jsonText(jsonMember(line, u"table"_s));
        const auto found = m_tables.constFind(collationKey(name));
        if (found == m_tables.constEnd())
            throw BadLine(u"the table \"%1\" has no line before it"_s.arg(name));
        PatchTable &table = m_patch[*found];
        if (!table.hasFields)
            throw BadLine(u"the table \"%1\" does not change by its own line"_s.arg(name));
        return table;
    }

    void takeCell(const QJsonObject &line) {
        PatchTable &table = tableOf(line);
        if (!table.key.isEmpty())
            throw BadLine(u"a cell by position in a table by key"_s);
        table.cells.push_back({jsonWholeNumber(jsonMember(line, u"record"_s), 1),
                               jsonWholeNumber(jsonMember(line, u"field"_s), 1), jsonCell(jsonMember(line, u"left"_s)),
                               jsonCell(jsonMember(line, u"right"_s))});
    }

    void takeRecord(const QJsonObject &line) {
        static const QHash<QString, PatchAction> actions{{u"added"_s, PatchAction::Added},
                                                         {u"removed"_s, PatchAction::Removed},
                                                         {u"changed"_s, PatchAction::Changed},
                                                         {u"field"_s, PatchAction::Field}};
        PatchTable &table = tableOf(line);
        PatchRecord record;
        const auto action = actions.constFind(jsonText(jsonMember(line, u"change"_s)));
        if (action == actions.constEnd())
            throw BadLine(u"there is no such change"_s);
        record.action = *action;
        record.key = jsonCells(jsonMember(line, u"key"_s));
        if (record.key.isEmpty() || record.key.size() != table.key.size())
            throw BadLine(u"its key has not as many values as the table's"_s);
        if (line.contains(u"occurrence"_s))
            record.occurrence = jsonWholeNumber(line.value(u"occurrence"_s), 1);
        if (record.action == PatchAction::Added || record.action == PatchAction::Removed) {
            record.values = jsonCells(jsonMember(line, u"values"_s));
            const auto &fields = record.action == PatchAction::Added ? table.rightFields : table.leftFields;
            if (record.values.size() != static_cast<qsizetype>(fields.size()))
                throw BadLine(u"it has not a value for each field"_s);
        } else {
            record.field = jsonText(jsonMember(line, u"field"_s));
            record.left = jsonCell(jsonMember(line, u"left"_s));
            record.right = jsonCell(jsonMember(line, u"right"_s));
        }
        table.records.push_back(std::move(record));
    }

    bool m_begun = false;
    Patch m_patch;
    std::optional<std::size_t> m_tableCount; ///< Where the first line tells it.
    std::vector<Changes> m_expected;         ///< Of each table.
    QHash<QString, std::size_t> m_tables;    // by their names' keys
};

PatchAction reversedAction(PatchAction action) {
    if (action == PatchAction::Added)
        return PatchAction::Removed;
    return action == PatchAction::Removed ? PatchAction::Added : action;
}

} // namespace

Result<Patch> readPatch(const QByteArray &lines) {
    PatchReader reader;
    const Result<void> read = readJsonLines(lines, [&](const QJsonObject &line) { reader.take(line); });
    if (!read)
        return tl::unexpected(read.error());
    try {
        return reader.finish();
    } catch (const BadLine &bad) {
        return failure(QString::fromUtf8(bad.what()));
    }
}

Patch reversed(Patch patch) {
    for (PatchTable &table : patch) {
        std::swap(table.leftName, table.rightName);
        std::swap(table.leftRecords, table.rightRecords);
        std::swap(table.leftFields, table.rightFields);
        for (PatchCell &cell : table.cells)
            std::swap(cell.left, cell.right);
        for (PatchRecord &record : table.records) {
            std::swap(record.left, record.right);
            record.action = reversedAction(record.action);
        }
    }
    return patch;
}

} // namespace qir
