#include "compare/conflicts/ConflictStanding.h"

#include "base/Collation.h"
#include "base/NumberText.h"
#include "compare/engine/TableSource.h"
#include "compare/engine/ValueEquality.h"
#include "db/StoredText.h"

#include <QHash>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using Kind = ConflictStanding::Kind;

constexpr int severalRecords = -1;
constexpr int recordsBetweenSteps = 1000;

/// Equal for equal values alone.
QString keyText(const QVariant &value) {
    const bool isText = value.typeId() == QMetaType::QString;
    const QString text = isText ? value.toString() : numberText(value.toDouble() + 0.0); // no -0
    return u"%1%2:"_s.arg(isText ? u't' : u'n').arg(text.size()) + text;
}

QString keyText(const QVariantList &values) {
    QString text;
    for (const QVariant &value : values)
        text += keyText(value);
    return text;
}

/// The current table of a database, where some of the conflicts are.
class ConflictTable {
public:
    explicit ConflictTable(const QirDatabase &database)
        : m_database(database)
        , m_table(database) {
        for (int field = m_table.fields(); field >= 1; --field)
            m_fields.insert(collationKey(m_table.fieldName(field)), field);
    }

    int records() const { return m_table.records(); }
    /// 0 for none.
    int fieldOf(const QString &name) const { return m_fields.value(collationKey(name)); }
    QVariant value(int record, int field) { return valueOf(m_table.cell(record, field)); }

    /// Looks up the records of these keys; 0 for none, severalRecords for more than one. False without such fields.
    bool find(const QStringList &names, QHash<QString, int> &keys, const KeyedStep &step) {
        std::vector<int> fields;
        for (const QString &name : names)
            fields.push_back(fieldOf(name));
        if (fields.empty() || std::ranges::count(fields, 0) > 0)
            return false;
        for (int record = 1; record <= records(); ++record) {
            if (step && record % recordsBetweenSteps == 0)
                step();
            QString key;
            for (const int field : fields)
                key += keyText(value(record, field));
            if (const auto found = keys.find(key); found != keys.end())
                *found = *found == 0 ? record : severalRecords;
        }
        return true;
    }

    bool holds(const QVariant &value, int field) const {
        const int type = m_database.QIRTableFieldType(field).toInt();
        const int size = type == static_cast<int>(FieldType::Text) ? m_database.QIRTableFieldSize(field).toInt() : 0;
        return storedText(type, size, valueText(value)) == valueText(value);
    }

private:
    const QirDatabase &m_database;
    CurrentTable m_table;
    QHash<QString, int> m_fields; // by their names' keys, the first of a name
};

/// Whether a record has the values of a side, as far as their fields are there.
bool hasValues(ConflictTable &table, int record, const QStringList &names, const QVariantList &values) {
    for (qsizetype i = 0; i < values.size(); ++i) {
        const int field = i < names.size() ? table.fieldOf(names[i]) : 0;
        if (field > 0 && !valuesEqual(table.value(record, field), values[i]))
            return false;
    }
    return true;
}

bool holdsAll(const ConflictTable &table, const QStringList &names, const QVariantList &values) {
    for (qsizetype i = 0; i < std::min(names.size(), values.size()); ++i)
        if (const int field = table.fieldOf(names[i]); field > 0 && !table.holds(values[i], field))
            return false;
    return true;
}

void takeCell(ConflictTable &table, const Conflict &conflict, ConflictStanding &standing) {
    standing.field = table.fieldOf(conflict.field);
    if (standing.record < 1 || standing.record > table.records() || standing.field < 1) {
        standing.record = std::clamp(standing.record, 0, table.records());
        // Without the field it is as in OURS where that lacks it too.
        const bool isAsOurs = standing.record > 0 && standing.field < 1 && conflict.ours.isEmpty();
        standing.kind = isAsOurs ? Kind::Ours : Kind::Missing;
        return;
    }
    const QVariant now = table.value(standing.record, standing.field);
    const auto isNow = [&](const QVariantList &side) { return !side.isEmpty() && valuesEqual(now, side.front()); };
    standing.kind = isNow(conflict.ours) ? Kind::Ours : isNow(conflict.theirs) ? Kind::Theirs : Kind::Other;
    standing.now = valueText(now);
    standing.oursStay = conflict.ours.isEmpty() || table.holds(conflict.ours.front(), standing.field);
    standing.theirsStay = conflict.theirs.isEmpty() || table.holds(conflict.theirs.front(), standing.field);
}

void takeRecord(ConflictTable &table, const Conflict &conflict, ConflictStanding &standing) {
    if (conflict.ours.isEmpty() == conflict.theirs.isEmpty()) {
        standing.kind = Kind::Whole;
        return;
    }
    standing.oursStay = holdsAll(table, conflict.oursFields, conflict.ours);
    standing.theirsStay = holdsAll(table, conflict.theirsFields, conflict.theirs);
    const bool oursHaveIt = !conflict.ours.isEmpty();
    const ConflictSide side = oursHaveIt ? ConflictSide::Ours : ConflictSide::Theirs;
    if (standing.record == 0)
        standing.kind = oursHaveIt ? Kind::Theirs : Kind::Ours;
    else if (hasValues(table, standing.record, fieldNamesOf(conflict, side), valuesOf(conflict, side)))
        standing.kind = oursHaveIt ? Kind::Ours : Kind::Theirs;
    else
        standing.kind = Kind::Other;
}

void takeStanding(ConflictTable &table, const Conflict &conflict, ConflictStanding &standing) {
    if (conflict.what == Conflict::What::Field) {
        standing.field = table.fieldOf(conflict.field);
    } else if (standing.kind == Kind::Several) {
        standing.field = table.fieldOf(conflict.field);
    } else if (conflict.what == Conflict::What::Cell) {
        takeCell(table, conflict, standing);
    } else if (conflict.what == Conflict::What::Record) {
        takeRecord(table, conflict, standing);
    }
}

using Indices = std::vector<std::size_t>;

/// Finds the records of conflicts of one table and one key.
void findRecords(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &indices,
                 std::vector<ConflictStanding> &standings, const KeyedStep &step) {
    QHash<QString, int> records;
    for (const std::size_t i : indices)
        records.insert(keyText(conflicts[i].key), 0);
    const bool isFound = table.find(conflicts[indices.front()].keyFields, records, step);
    for (const std::size_t i : indices) {
        const int record = records.value(keyText(conflicts[i].key));
        if (!isFound || record == severalRecords)
            standings[i].kind = Kind::Several;
        else
            standings[i].record = record;
    }
}

} // namespace

const QVariantList &valuesOf(const Conflict &conflict, ConflictSide side) {
    return side == ConflictSide::Ours ? conflict.ours : conflict.theirs;
}

QStringList fieldNamesOf(const Conflict &conflict, ConflictSide side) {
    return side == ConflictSide::Ours ? conflict.oursFields : conflict.theirsFields;
}

Taking takingOf(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side) {
    const bool isOurs = side == ConflictSide::Ours;
    if (standing.kind == (isOurs ? Kind::Ours : Kind::Theirs))
        return Taking::Nothing;
    const bool isValue = conflict.what == Conflict::What::Cell;
    const bool isTold = isValue ? !valuesOf(conflict, side).isEmpty()
                                : valuesOf(conflict, side).isEmpty() || !fieldNamesOf(conflict, side).isEmpty();
    if (!isTold || standing.kind == Kind::Missing || standing.kind == Kind::Several || standing.kind == Kind::Whole ||
        (isValue && standing.field == 0))
        return Taking::ByHand;
    return (isOurs ? standing.oursStay : standing.theirsStay) ? Taking::Write : Taking::Cut;
}

std::vector<ConflictStanding> standingsOf(const QirDatabase &database, const std::vector<Conflict> &conflicts,
                                          const KeyedStep &step) {
    std::vector<ConflictStanding> standings(conflicts.size());
    std::map<QString, Indices> tables;
    for (std::size_t i = 0; i < conflicts.size(); ++i) {
        tables[collationKey(conflicts[i].table)].push_back(i);
        standings[i].record = conflicts[i].record;
    }
    for (const auto &[key, indices] : tables) {
        const QString &name = conflicts[indices.front()].table;
        if (!database.ExistTable(name)) {
            for (const std::size_t i : indices)
                if (conflicts[i].what != Conflict::What::Table)
                    standings[i].kind = Kind::Missing;
            continue;
        }
        database.QIRTableRecordSource(name);
        ConflictTable table(database);
        std::map<QStringList, Indices> keys;
        for (const std::size_t i : indices)
            if (!conflicts[i].key.isEmpty())
                keys[conflicts[i].keyFields].push_back(i);
        for (const auto &[fields, ofKey] : keys)
            findRecords(table, conflicts, ofKey, standings, step);
        for (const std::size_t i : indices)
            takeStanding(table, conflicts[i], standings[i]);
    }
    return standings;
}

} // namespace qir
