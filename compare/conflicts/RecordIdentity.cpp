#include "compare/conflicts/RecordIdentity.h"

#include "compare/conflicts/ConflictTable.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace qir {

namespace {

using Kind = ConflictStanding::Kind;
using Identity = ConflictStanding::Identity;
using What = Conflict::What;
using Indices = std::vector<std::size_t>;

/// What is known of a record that these lines, all of cells, name by its number.
void takeCells(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &lines,
               const DecidedFields &decided, std::vector<ConflictStanding> &standings) {
    int others = 0; // lines whose place is as neither side has it
    for (const std::size_t i : lines)
        others += standings[i].kind == Kind::Other ? 1 : 0;
    const RecordDigest digest = table.digest(standings[lines.front()].record, decided);
    const QString text = digest.text();
    for (const std::size_t i : lines) {
        ConflictStanding &standing = standings[i];
        const int othersBeside = others - (standing.kind == Kind::Other ? 1 : 0);
        if (conflicts[i].recordDigest.isEmpty() || (digest.isEmpty() && lines.size() < 2))
            standing.identity = Identity::Untold;
        else if (conflicts[i].recordDigest != text || othersBeside > 0)
            standing.identity = Identity::Differs;
    }
}

/// Several records of a key are told apart by their order alone.
bool hasKeyTwice(const std::optional<ConflictRecords> &records) {
    QSet<QString> keys;
    for (const QVariantList &record : records.value_or(ConflictRecords()))
        keys.insert(keyText(record.first(record.size() - 1)));
    return records && keys.size() < static_cast<qsizetype>(records->size());
}

/// What all records of the table are known by, in their order; "" where they are known by nothing.
QString digestOf(ConflictTable &table, const DecidedFields &decided, const KeyedStep &step) {
    RecordsDigest digest;
    for (int record = 1; record <= table.records(); ++record) {
        if (step && record % recordsBetweenSteps == 0)
            step();
        digest.add(table.digest(record, decided));
    }
    return digest.isEmpty() ? QString() : digest.text();
}

Identity identityOfRecord(const Conflict &conflict, Kind kind) {
    const bool oursHaveIt = !conflict.ours.isEmpty();
    if (fieldNamesOf(conflict, oursHaveIt ? ConflictSide::Ours : ConflictSide::Theirs).isEmpty())
        return Identity::Untold;
    return kind == Kind::Other ? Identity::Differs : Identity::Known; // its values are what it is known by
}

/// Of fields, whose values stand in the order of the records where there is no key.
void takeFields(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &fields,
                const DecidedFields &decided, std::vector<ConflictStanding> &standings, const KeyedStep &step) {
    std::optional<QString> now;
    for (const std::size_t i : fields) {
        const Conflict &conflict = conflicts[i];
        if (!conflict.keyFields.isEmpty()) {
            if (hasKeyTwice(conflict.oursRecords) || hasKeyTwice(conflict.theirsRecords))
                standings[i].identity = Identity::Untold;
            continue;
        }
        if (conflict.recordDigest.isEmpty()) {
            standings[i].identity = Identity::Untold;
            continue;
        }
        if (!now)
            now = digestOf(table, decided, step);
        standings[i].identity = now->isEmpty()                  ? Identity::Untold
                                : *now == conflict.recordDigest ? Identity::Known
                                                                : Identity::Differs;
    }
}

} // namespace

void takeIdentities(ConflictTable &table, const std::vector<Conflict> &conflicts, const Indices &indices,
                    const DecidedFields &decided, std::vector<ConflictStanding> &standings, const KeyedStep &step) {
    std::map<int, Indices> cells; // of each record
    Indices fields;
    for (const std::size_t i : indices) {
        const Conflict &conflict = conflicts[i];
        ConflictStanding &standing = standings[i];
        const bool isNumbered = conflict.key.isEmpty() && standing.record > 0;
        if (conflict.what == What::Field)
            fields.push_back(i);
        else if (conflict.what == What::Cell && isNumbered)
            cells[standing.record].push_back(i);
        else if (conflict.what == What::Cell && conflict.occurrence > 0)
            standing.identity = Identity::Untold;
        else if (conflict.what == What::Record && isNumbered)
            standing.identity = identityOfRecord(conflict, standing.kind);
    }
    for (const auto &[record, lines] : cells)
        takeCells(table, conflicts, lines, decided, standings);
    takeFields(table, conflicts, fields, decided, standings, step);
}

void takeTwice(const std::vector<Conflict> &conflicts, const Indices &indices,
               std::vector<ConflictStanding> &standings) {
    std::map<std::pair<int, int>, std::size_t> places;
    for (const std::size_t i : indices) {
        const bool isCell = conflicts[i].what == What::Cell;
        if (standings[i].record == 0 || (isCell && standings[i].field == 0) ||
            (!isCell && conflicts[i].what != What::Record))
            continue;
        const std::pair place(standings[i].record, isCell ? standings[i].field : 0);
        if (const auto [first, isFirst] = places.emplace(place, i); !isFirst)
            standings[i].kind = standings[first->second].kind = Kind::Several;
    }
}

} // namespace qir
