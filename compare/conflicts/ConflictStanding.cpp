#include "compare/conflicts/ConflictStanding.h"

#include "base/Collation.h"
#include "compare/conflicts/ConflictTable.h"
#include "compare/conflicts/RecordIdentity.h"
#include "compare/conflicts/TakenField.h"
#include "compare/engine/ValueEquality.h"
#include "db/StoredText.h"
#include "db/tables/TableWriter.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using Kind = ConflictStanding::Kind;
using What = Conflict::What;
using About = Conflict::About;

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
    if (standing.record == 0 || standing.field == 0) {
        // Without the field or the record it is as in OURS where that lacks it too.
        standing.kind = conflict.ours.isEmpty() ? Kind::Ours : Kind::Missing;
        return;
    }
    const QVariant now = table.value(standing.record, standing.field);
    const auto isNow = [&](const QVariantList &side) { return !side.isEmpty() && valuesEqual(now, side.front()); };
    // A record that THEIRS alone has added is empty where its field is as in OURS.
    const bool isBare = conflict.ours.isEmpty() && isEmptyValue(now);
    standing.kind = isBare || isNow(conflict.ours) ? Kind::Ours : isNow(conflict.theirs) ? Kind::Theirs : Kind::Other;
    standing.now = valueText(now);
    standing.oursStay = conflict.ours.isEmpty() || table.holds(conflict.ours.front(), standing.field);
    standing.theirsStay = conflict.theirs.isEmpty() || table.holds(conflict.theirs.front(), standing.field);
}

bool isAsSide(ConflictTable &table, int record, const Conflict &conflict, ConflictSide side) {
    const QVariantList &values = valuesOf(conflict, side);
    return values.isEmpty() ? record == 0
                            : record > 0 && hasValues(table, record, fieldNamesOf(conflict, side), values);
}

void takeStay(const ConflictTable &table, const Conflict &conflict, ConflictStanding &standing) {
    standing.oursStay = holdsAll(table, conflict.oursFields, conflict.ours);
    standing.theirsStay = holdsAll(table, conflict.theirsFields, conflict.theirs);
}

/// Whether the values of a side are of the key of the line, as far as they tell.
bool isOfKey(const Conflict &conflict, const QStringList &names, const QVariantList &values) {
    for (qsizetype i = 0; i < std::min(names.size(), values.size()); ++i)
        for (qsizetype j = 0; j < std::min(conflict.keyFields.size(), conflict.key.size()); ++j)
            if (collationKey(names[i]) == collationKey(conflict.keyFields[j]) &&
                keyText({values[i]}) != keyText({conflict.key[j]}))
                return false;
    return true;
}

void takeRecord(ConflictTable &table, const Conflict &conflict, const DecidedFields &decided,
                ConflictStanding &standing) {
    if (conflict.ours.isEmpty() == conflict.theirs.isEmpty()) {
        standing.kind = Kind::Whole;
        return;
    }
    const ConflictSide side = conflict.ours.isEmpty() ? ConflictSide::Theirs : ConflictSide::Ours;
    const QStringList names = fieldNamesOf(conflict, side);
    // A number is one of the records of OURS.
    if ((conflict.key.isEmpty() && side == ConflictSide::Theirs) ||
        !isOfKey(conflict, names, valuesOf(conflict, side))) {
        standing.kind = Kind::Several;
        return;
    }
    if (!names.isEmpty() && !table.hasPlaceFor(names, decided)) {
        standing.kind = Kind::Missing;
        return;
    }
    takeStay(table, conflict, standing);
    standing.kind = isAsSide(table, standing.record, conflict, ConflictSide::Ours)     ? Kind::Ours
                    : isAsSide(table, standing.record, conflict, ConflictSide::Theirs) ? Kind::Theirs
                                                                                       : Kind::Other;
}

void takeField(ConflictTable &table, const Conflict &conflict, ConflictStanding &standing, const KeyedStep &step) {
    standing.field = table.fieldOf(conflict.field);
    if (standing.field > 0)
        standing.now = table.headerOf(standing.field);
    const auto isNow = [&](const QVariantList &side) {
        return standing.field == 0 ? side.isEmpty() : !side.isEmpty() && side.front().toString() == standing.now;
    };
    standing.kind = isNow(conflict.ours)     ? Kind::Ours
                    : isNow(conflict.theirs) ? Kind::Theirs
                    : standing.field == 0    ? Kind::Missing
                                             : Kind::Other;
    const FieldFit ours = fieldFit(table, conflict, ConflictSide::Ours, step);
    const FieldFit theirs = fieldFit(table, conflict, ConflictSide::Theirs, step);
    standing.isPlaced = ours != FieldFit::NotPlaced && theirs != FieldFit::NotPlaced;
    standing.oursStay = ours != FieldFit::Cut;
    standing.theirsStay = theirs != FieldFit::Cut;
}

bool hasContent(ConflictTable &table, const Conflict &conflict, ConflictSide side) {
    const QVariantList &headers = valuesOf(conflict, side);
    const ConflictRecords &records = *recordsOf(conflict, side);
    const bool isBare = headers.size() == 1 && headers.front().toString().isEmpty();
    if (table.fields() != (isBare ? 0 : headers.size()) || table.records() != static_cast<int>(records.size()))
        return false;
    for (int field = 1; field <= table.fields(); ++field)
        if (table.headerOf(field) != headers[field - 1].toString())
            return false;
    int record = 0;
    return std::ranges::all_of(records, [&](const QVariantList &values) {
        ++record;
        for (int field = 1; field <= table.fields(); ++field)
            if (field > values.size() || !valuesEqual(table.value(record, field), values[field - 1]))
                return false;
        return true;
    });
}

/// The fields that a side has too stand in its order.
bool hasOrder(const ConflictTable &table, const QVariantList &headers) {
    int last = 0;
    for (const QVariant &header : headers) {
        const int field = table.fieldOf(nameInHeader(header.toString()));
        if (field > 0 && field < last)
            return false;
        last = std::max(last, field);
    }
    return true;
}

Kind contentKind(ConflictTable &table, const Conflict &conflict) {
    const auto isAs = [&](ConflictSide side) {
        return !recordsOf(conflict, side).has_value() || hasContent(table, conflict, side);
    };
    if (conflict.ours.isEmpty())
        return isAs(ConflictSide::Theirs) ? Kind::Theirs : Kind::Other;
    if (conflict.theirs.isEmpty())
        return isAs(ConflictSide::Ours) ? Kind::Ours : Kind::Other;
    if (!conflict.oursRecords || !conflict.theirsRecords)
        return Kind::Whole;
    return isAs(ConflictSide::Ours) ? Kind::Ours : isAs(ConflictSide::Theirs) ? Kind::Theirs : Kind::Other;
}

Kind tableKind(ConflictTable &table, const QString &name, const Conflict &conflict) {
    const auto kindBy = [&](auto isAs) {
        return isAs(conflict.ours) ? Kind::Ours : isAs(conflict.theirs) ? Kind::Theirs : Kind::Other;
    };
    switch (conflict.about) {
    case About::Name:
        return kindBy([&](const QVariantList &side) { return side.value(0).toString() == name; });
    case About::Order:
        return kindBy([&](const QVariantList &side) { return hasOrder(table, side); });
    case About::Content:
        break;
    }
    return contentKind(table, conflict);
}

Kind kindWithoutTable(const Conflict &conflict) {
    if (conflict.what != What::Table || conflict.about != About::Content)
        return Kind::Missing;
    return conflict.ours.isEmpty() ? Kind::Ours : conflict.theirs.isEmpty() ? Kind::Theirs : Kind::Missing;
}

using Indices = std::vector<std::size_t>;

/// The records of one key, of which there are several: they are as a side has them all together.
void takeGroup(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &indices,
               const std::vector<int> &records, std::vector<ConflictStanding> &standings) {
    const auto isAs = [&](ConflictSide side) {
        return std::ranges::all_of(
            indices, [&](std::size_t i) { return isAsSide(table, standings[i].record, conflicts[i], side); });
    };
    const Kind kind = records.size() > indices.size() ? Kind::Several
                      : isAs(ConflictSide::Ours)      ? Kind::Ours
                      : isAs(ConflictSide::Theirs)    ? Kind::Theirs
                                                      : Kind::Other;
    for (const std::size_t i : indices) {
        takeStay(table, conflicts[i], standings[i]);
        standings[i].kind = kind;
    }
}

/// Finds the records of conflicts of one table and one key.
void findRecords(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &indices,
                 std::vector<ConflictStanding> &standings, const KeyedStep &step) {
    RecordsOfKeys records;
    for (const std::size_t i : indices)
        records.insert(keyText(conflicts[i].key), {});
    const bool isFound = table.find(conflicts[indices.front()].keyFields, records, step);
    std::map<QString, Indices> groups;
    for (const std::size_t i : indices) {
        const QString key = keyText(conflicts[i].key);
        const std::vector<int> found = records.value(key);
        const auto place = static_cast<std::size_t>(std::max(conflicts[i].occurrence, 1)) - 1;
        standings[i].record = place < found.size() ? found[place] : 0;
        if (!isFound || (found.size() > 1 && conflicts[i].occurrence == 0)) {
            standings[i].kind = Kind::Several;
            standings[i].record = 0;
        } else if (conflicts[i].occurrence > 0 && conflicts[i].what == What::Record) {
            groups[key].push_back(i);
        }
    }
    for (const auto &[key, group] : groups)
        takeGroup(table, conflicts, group, records.value(key), standings);
}

void takeStanding(ConflictTable &table, const QString &name, const Conflict &conflict, const DecidedFields &decided,
                  ConflictStanding &standing, const KeyedStep &step) {
    if (standing.kind == Kind::Several) {
        standing.field = table.fieldOf(conflict.field);
        return;
    }
    if (standing.record > table.records()) { // as a number alone may say
        standing.record = 0;
        standing.kind = Kind::Missing;
        return;
    }
    switch (conflict.what) {
    case What::Cell:
        takeCell(table, conflict, standing);
        break;
    case What::Record:
        if (conflict.occurrence == 0)
            takeRecord(table, conflict, decided, standing);
        break;
    case What::Field:
        takeField(table, conflict, standing, step);
        break;
    case What::Table:
        standing.kind = tableKind(table, name, conflict);
        break;
    }
}

QStringList keysOf(const QStringList &names) {
    QStringList keys;
    for (const QString &name : names)
        keys.append(collationKey(name));
    return keys;
}

void takeTable(ConflictTable &table, const QString &name, const std::vector<Conflict> &conflicts,
               const Indices &indices, std::vector<ConflictStanding> &standings, const KeyedStep &step) {
    std::map<QStringList, Indices> keys;
    DecidedFields decided;
    for (const std::size_t i : indices) {
        if (!conflicts[i].key.isEmpty())
            keys[keysOf(conflicts[i].keyFields)].push_back(i);
        decided.add(conflicts[i]);
    }
    for (const auto &[fields, ofKey] : keys)
        findRecords(table, conflicts, ofKey, standings, step);
    for (const std::size_t i : indices)
        takeStanding(table, name, conflicts[i], decided, standings[i], step);
    takeIdentities(table, conflicts, indices, decided, standings, step);
    takeTwice(conflicts, indices, standings);
}

bool isTold(const Conflict &conflict, ConflictSide side) {
    const bool isThere = !valuesOf(conflict, side).isEmpty();
    const bool hasRecords = recordsOf(conflict, side).has_value();
    switch (conflict.what) {
    case What::Cell:
        return isThere;
    case What::Record:
        return !isThere || !fieldNamesOf(conflict, side).isEmpty();
    case What::Field:
        return !isThere || hasRecords;
    case What::Table:
        break;
    }
    return conflict.about == About::Content ? !isThere || hasRecords : isThere;
}

} // namespace

const QVariantList &valuesOf(const Conflict &conflict, ConflictSide side) {
    return side == ConflictSide::Ours ? conflict.ours : conflict.theirs;
}

QStringList fieldNamesOf(const Conflict &conflict, ConflictSide side) {
    return side == ConflictSide::Ours ? conflict.oursFields : conflict.theirsFields;
}

const std::optional<ConflictRecords> &recordsOf(const Conflict &conflict, ConflictSide side) {
    return side == ConflictSide::Ours ? conflict.oursRecords : conflict.theirsRecords;
}

Taking takingOf(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side) {
    const bool isOurs = side == ConflictSide::Ours;
    if (standing.kind == (isOurs ? Kind::Ours : Kind::Theirs))
        return Taking::Nothing;
    const bool isKnown =
        standing.kind != Kind::Missing && standing.kind != Kind::Several && standing.kind != Kind::Whole;
    const bool hasPlace = conflict.what == What::Cell    ? standing.field > 0 && standing.record > 0
                          : conflict.what == What::Field ? standing.isPlaced || valuesOf(conflict, side).isEmpty()
                                                         : true;
    if (!isTold(conflict, side) || !isKnown || !hasPlace)
        return Taking::ByHand;
    return (isOurs ? standing.oursStay : standing.theirsStay) ? Taking::Write : Taking::Cut;
}

bool isUnsure(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side) {
    if (standing.identity == ConflictStanding::Identity::Known)
        return false;
    const bool standsThere = standing.kind == (side == ConflictSide::Ours ? Kind::Ours : Kind::Theirs);
    if (conflict.what == What::Field) // a field that goes has no values to place
        return !standsThere && !valuesOf(conflict, side).isEmpty();
    // Where OURS stands nothing is written, whichever record it is.
    return standing.identity == ConflictStanding::Identity::Differs || !standsThere || side != ConflictSide::Ours;
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
        const int number = tableNumber(database, conflicts[indices.front()].table);
        if (number == 0) {
            for (const std::size_t i : indices)
                standings[i].kind = kindWithoutTable(conflicts[i]);
            continue;
        }
        const QString name = database.QIRTableName(number);
        database.QIRTableRecordSource(name);
        ConflictTable table(database);
        takeTable(table, name, conflicts, indices, standings, step);
    }
    return standings;
}

std::vector<int> decidedTogether(const std::vector<Conflict> &conflicts, const std::vector<int> &rows) {
    const auto groupOf = [&](std::size_t i) {
        const Conflict &conflict = conflicts[i];
        return conflict.what == What::Record && conflict.occurrence > 0
                   ? collationKey(conflict.table) + u'\n' + keyText(conflict.key)
                   : QString();
    };
    QSet<QString> groups;
    QSet<int> chosen(rows.begin(), rows.end());
    for (const int row : rows)
        groups.insert(groupOf(static_cast<std::size_t>(row)));
    groups.remove(QString());
    std::vector<int> together;
    for (std::size_t i = 0; i < conflicts.size(); ++i)
        if (chosen.contains(static_cast<int>(i)) || groups.contains(groupOf(i)))
            together.push_back(static_cast<int>(i));
    return together;
}

} // namespace qir
