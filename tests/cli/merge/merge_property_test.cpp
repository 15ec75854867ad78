#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "tests/cli/merge/DrawnMerge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// What a merge must keep, written down once more without any thought of how it is done: cells by the names of their
// tables and fields.

using test::Drawing;
using test::nothing;
using test::show;
using test::shown;
using test::Side;

/// A record as a map from the names of its fields.
using Row = std::map<QString, QVariant>;

/// A cell that a record does not have counts as empty, whatever its type.
QString plain(const QVariant &value) {
    const QString text = show(value);
    return text == u"t"_s || text == u"n0"_s ? u"-"_s : text;
}

/// What one of two changes of a thing comes to; nothing where they are different ones.
std::optional<QString> both(const QString &base, const QString &ours, const QString &theirs) {
    if (ours == theirs || theirs == base)
        return ours;
    return ours == base ? std::optional(theirs) : std::nullopt;
}

/// The most values that records of BASE keep where they are read as these ones of a side, in their order, and what they
/// keep where each is read as the one at its place.
class Reading {
public:
    Reading(const Side &base, const Side &side)
        : m_base(base)
        , m_side(side) {}

    int byPlace() const {
        int kept = 0;
        for (std::size_t i = 0; i < m_base.table->records.size(); ++i)
            kept += keptIn(i, i);
        return kept;
    }
    int best(std::size_t before = 0, std::size_t now = 0) const {
        if (before == m_base.table->records.size() || now == m_side.table->records.size())
            return 0;
        return std::max(
            {keptIn(before, now) + best(before + 1, now + 1), best(before + 1, now), best(before, now + 1)});
    }

private:
    int keptIn(std::size_t before, std::size_t now) const {
        int kept = 0;
        for (const FieldInfo &field : m_base.table->fields) {
            const QVariant value = m_base.value(before, field.name);
            kept += plain(value) != u"-"_s && show(value) == show(m_side.value(now, field.name)) ? 1 : 0;
        }
        return kept;
    }

    Side m_base;
    Side m_side;
};

class Check {
public:
    Check(const DatabaseContent &base, const DatabaseContent &ours, const DatabaseContent &theirs,
          const MergedContent &result, bool hasKey)
        : m_base(base)
        , m_ours(ours)
        , m_theirs(theirs)
        , m_result(result)
        , m_hasKey(hasKey) {}

    /// What is lost, "" for nothing.
    QString problem() {
        for (const QString &name : tableNamesOf())
            checkTable(name);
        return m_problem;
    }

private:
    QStringList tableNamesOf() const {
        QStringList names;
        for (const DatabaseContent *side : {&m_base, &m_ours, &m_theirs, &m_result.content})
            for (const TableContent &table : side->tables)
                if (!names.contains(table.name))
                    names += table.name;
        return names;
    }

    void fail(const QString &what) {
        if (m_problem.isEmpty())
            m_problem = u"table %1: %2"_s.arg(m_table, what);
    }
    void require(bool holds, const QString &what) {
        if (!holds)
            fail(what);
    }

    template<class Matches>
    bool told(Conflict::What what, Matches matches) const {
        return std::ranges::any_of(m_result.conflicts, [&](const Conflict &conflict) {
            return conflict.what == what && conflict.table == m_table && matches(conflict);
        });
    }
    bool tableTold() const {
        return told(Conflict::What::Table, [](const Conflict &) { return true; });
    }
    bool fieldTold(const QString &field) const {
        return told(Conflict::What::Field, [&](const Conflict &conflict) { return conflict.field == field; });
    }

    void checkTable(const QString &name) {
        m_table = name;
        const TableContent *base = TablesByName(m_base).find(name);
        const TableContent *ours = TablesByName(m_ours).find(name);
        const TableContent *theirs = TablesByName(m_theirs).find(name);
        const TableContent *result = TablesByName(m_result.content).find(name);
        const auto same = [](const TableContent *one, const TableContent *other) {
            return (one == nullptr) == (other == nullptr) && (one == nullptr || sameContent(*one, *other));
        };
        const bool oneSided = same(base, ours) || same(base, theirs) || same(ours, theirs);
        if (oneSided) {
            require(!tableTold(), u"a change of one side is a conflict"_s);
            require(same(result, same(base, ours) ? theirs : ours), u"a change of one side alone is not the result"_s);
            return;
        }
        if (tableTold()) {
            const bool isOurs = same(result, ours);
            require(isOurs ||
                        told(Conflict::What::Table,
                             [](const Conflict &conflict) { return conflict.reason.contains(u"moved fields"_s); }),
                    u"a table in conflict is not ours"_s);
            return;
        }
        require(base != nullptr && ours != nullptr && theirs != nullptr && result != nullptr,
                u"a table that came or went beside changes is not told"_s);
        if (m_problem.isEmpty())
            checkContent({base}, {ours}, {theirs}, {result});
    }

    void checkContent(Side base, Side ours, Side theirs, Side result) {
        m_toldFields.clear();
        QStringList fields;
        QStringList all;
        for (const Side &side : {base, ours, theirs})
            for (const FieldInfo &field : side.table->fields)
                if (!all.contains(field.name))
                    all += field.name;
        for (const QString &field : all) {
            if (checkField(field, base, ours, theirs, result))
                fields += field;
        }
        const bool keyed = m_hasKey && base.has(u"Id"_s) && ours.has(u"Id"_s) && theirs.has(u"Id"_s);
        if (keyed && fieldTold(u"Id"_s))
            return; // which records are which is part of that conflict
        if (keyed)
            checkKeyed(fields, base, ours, theirs, result);
        else
            checkPlaces(fields, base, ours, theirs, result);
    }

    /// True for a field whose cells are to be looked at.
    bool checkField(const QString &field, Side base, Side ours, Side theirs, Side result) {
        const auto header = [&](const Side &side) { return side.has(field) ? side.header(field) : u"none"_s; };
        if (fieldTold(field)) {
            m_toldFields += field;
            require(header(result) == header(ours), u"field %1 in conflict is not ours"_s.arg(field));
            return false;
        }
        const std::optional<QString> expected = both(header(base), header(ours), header(theirs));
        require(expected && *expected == header(result), u"what became of field %1 is lost"_s.arg(field));
        if (!result.has(field)) { // removed: the other side must not have changed a value
            for (const Side &side : {ours, theirs})
                for (std::size_t i = 0; side.has(field) && i < side.table->records.size(); ++i)
                    require(show(side.value(i, field)) == show(base.value(i, field)),
                            u"a value of the removed field %1 is lost"_s.arg(field));
            return false;
        }
        return true;
    }

    /// The values of a field in conflict are those of OURS: another one that THEIRS wrote must be told.
    void checkLeftOut(const Side &theirs, std::size_t record, const QVariant &key, const QVariantList &standing,
                      const QString &field) {
        const QString value = plain(theirs.value(record, field));
        if (std::ranges::any_of(standing, [&](const QVariant &other) { return plain(other) == value; }))
            return;
        require(told(Conflict::What::Cell,
                     [&](const Conflict &conflict) {
                         return conflict.field == field && show(conflict.key.value(0)) == show(key) &&
                                plain(conflict.theirs.value(0)) == value;
                     }),
                u"the value %1 of field %2 is told nowhere"_s.arg(value, field));
    }

    void checkCells(const QStringList &fields, const std::vector<Row> &rows, const Conflict &place) {
        for (const QString &field : fields) {
            const QString base = plain(rows[0].at(field));
            const QString ours = plain(rows[1].at(field));
            const QString theirs = plain(rows[2].at(field));
            const QString result = plain(rows[3].at(field));
            const std::optional<QString> expected = both(base, ours, theirs);
            if (expected) {
                require(*expected == result, u"cell %1: %2, %3, %4 gave %5"_s.arg(field, base, ours, theirs, result));
                continue;
            }
            require(result == ours, u"cell %1 in conflict is not ours"_s.arg(field));
            require(told(Conflict::What::Cell,
                         [&](const Conflict &conflict) {
                             return conflict.field == field && conflict.record == place.record &&
                                    conflict.key == place.key && plain(conflict.theirs.value(0)) == theirs;
                         }),
                    u"the other value of cell %1 is told nowhere"_s.arg(field));
        }
    }

    static Row rowOf(const QStringList &fields, const Side &side, std::size_t record) {
        Row row;
        for (const QString &field : fields)
            row[field] = side.value(record, field);
        return row;
    }

    static QStringList plainOf(const QStringList &fields, const Side &side, std::size_t record) {
        QStringList texts;
        for (const QString &field : fields)
            texts += plain(side.value(record, field));
        return texts;
    }

    void checkPlaces(const QStringList &fields, Side base, Side ours, Side theirs, Side result) {
        const std::size_t common = base.table->records.size();
        require(ours.table->records.size() >= common && theirs.table->records.size() >= common &&
                    result.table->records.size() >= common,
                u"a removal beside edits is not told"_s);
        for (std::size_t i = 0; i < common && m_problem.isEmpty(); ++i) {
            Conflict place;
            place.record = static_cast<int>(i) + 1;
            checkCells(
                fields,
                {rowOf(fields, base, i), rowOf(fields, ours, i), rowOf(fields, theirs, i), rowOf(fields, result, i)},
                place);
        }
        for (const Side &side : {ours, theirs})
            require(Reading(base, side).best() <= Reading(base, side).byPlace(),
                    u"an insertion beside other edits is not told"_s);
        for (const QString &field : m_toldFields)
            for (std::size_t i = 0; theirs.has(field) && i < theirs.table->records.size(); ++i)
                checkLeftOut(theirs, i, nothing, {base.value(i, field), ours.value(i, field)}, field);
        std::size_t added = 0;
        for (const Side &side : {ours, theirs}) {
            added += side.table->records.size() - common;
            std::size_t at = common;
            for (std::size_t i = common; i < side.table->records.size(); ++i, ++at) {
                while (at < result.table->records.size() && plainOf(fields, side, i) != plainOf(fields, result, at))
                    ++at;
                require(at < result.table->records.size(), u"an added record is lost"_s);
            }
        }
        require(result.table->records.size() <= common + added, u"records come from nowhere"_s);
    }

    using Groups = std::map<QString, std::vector<std::size_t>>;
    static Groups groupsOf(const Side &side) {
        Groups groups;
        for (std::size_t i = 0; i < side.table->records.size(); ++i)
            groups[show(side.value(i, u"Id"_s))].push_back(i);
        return groups;
    }

    void checkKeyed(const QStringList &fields, Side base, Side ours, Side theirs, Side result) {
        const std::array sides{base, ours, theirs, result};
        std::array<Groups, 4> groups;
        std::set<QString> keys;
        for (std::size_t s = 0; s < sides.size(); ++s) {
            groups[s] = groupsOf(sides[s]);
            for (const auto &[key, records] : groups[s])
                keys.insert(key);
        }
        for (const QString &key : keys) {
            std::array<std::vector<std::size_t>, 4> records;
            for (std::size_t s = 0; s < sides.size(); ++s)
                records[s] = groups[s][key];
            checkKey(fields, sides, records, key);
            checkLeftOutOf(sides, records);
        }
    }

    void checkLeftOutOf(const std::array<Side, 4> &sides, const std::array<std::vector<std::size_t>, 4> &records) {
        for (const QString &field : m_toldFields) {
            QVariantList standing;
            for (const std::size_t s : {0U, 1U})
                for (const std::size_t record : records[s])
                    standing += sides[s].value(record, field);
            if (standing.empty())
                standing += nothing;
            for (const std::size_t record : records[2])
                if (sides[2].has(field))
                    checkLeftOut(sides[2], record, sides[2].value(record, u"Id"_s), standing, field);
        }
    }

    /// Every record of THEIRS stands in the list of conflicts.
    void checkRecordsTold(const Side &theirs, const std::vector<std::size_t> &records, const QString &key) {
        for (const std::size_t record : records)
            require(told(Conflict::What::Record,
                         [&](const Conflict &conflict) {
                             return show(conflict.key.value(0)) == key &&
                                    std::ranges::equal(conflict.theirs, theirs.table->records[record], sameValue);
                         }),
                    u"a record of theirs is told nowhere: "_s + key);
    }

    void checkKey(const QStringList &fields, const std::array<Side, 4> &sides,
                  const std::array<std::vector<std::size_t>, 4> &records, const QString &key) {
        std::array<QList<QStringList>, 4> rows;
        for (std::size_t s = 0; s < sides.size(); ++s)
            for (const std::size_t record : records[s])
                rows[s].append(plainOf(fields, sides[s], record));
        const bool isTold = told(Conflict::What::Record, [&](const Conflict &conflict) {
            return !conflict.key.isEmpty() && show(conflict.key.front()) == key;
        });
        if (isTold) {
            require(rows[3] == rows[1], u"a record in conflict is not ours: "_s + key);
            checkRecordsTold(sides[2], records[2], key);
            return;
        }
        const bool isSingle = std::ranges::all_of(records, [](const auto &list) { return list.size() <= 1; });
        if (isSingle && !records[1].empty() && !records[2].empty()) {
            require(!records[3].empty(), u"a record is lost: "_s + key);
            if (m_problem.isEmpty())
                checkMatched(fields, sides, records);
            return;
        }
        if (rows[1] == rows[0])
            require(rows[3] == rows[2], u"what THEIRS made of a record is lost: "_s + key);
        else if (rows[2] == rows[0] || rows[1] == rows[2])
            require(rows[3] == rows[1], u"what OURS made of a record is lost: "_s + key);
        else
            fail(u"two changes of a record are told nowhere: "_s + key);
    }

    void checkMatched(const QStringList &fields, const std::array<Side, 4> &sides,
                      const std::array<std::vector<std::size_t>, 4> &records) {
        constexpr std::size_t beyond = 1000000;
        std::vector<Row> rows;
        for (std::size_t s = 0; s < sides.size(); ++s)
            rows.push_back(rowOf(fields, sides[s], records[s].empty() ? beyond : records[s].front()));
        Conflict place;
        place.record = static_cast<int>(records[1].front()) + 1;
        place.key = {sides[1].value(records[1].front(), u"Id"_s)};
        if (!records[0].empty()) {
            checkCells(fields, rows, place);
            return;
        }
        // Both have added it: what differs is in conflict, an empty value too.
        for (const QString &field : fields) {
            if (!sides[1].has(field) || !sides[2].has(field) || show(rows[1].at(field)) == show(rows[2].at(field)))
                continue;
            require(plain(rows[3].at(field)) == plain(rows[1].at(field)), u"an added cell in conflict is not ours"_s);
            require(
                told(Conflict::What::Cell,
                     [&](const Conflict &conflict) { return conflict.field == field && conflict.key == place.key; }),
                u"two values of an added record are told nowhere"_s);
        }
    }

    const DatabaseContent &m_base;
    const DatabaseContent &m_ours;
    const DatabaseContent &m_theirs;
    const MergedContent &m_result;
    bool m_hasKey;
    QString m_table;
    QString m_problem;
    QStringList m_toldFields; ///< Those of the table that are in conflict.
};

TEST(MergeProperty, NoEditOfEitherSideIsLostUnlessAConflictTellsOfIt) {
    constexpr std::uint64_t triples = 20000;
    std::size_t conflicts = 0;
    std::size_t merges = 0;
    for (std::uint64_t seed = 1; seed <= triples; ++seed) {
        Drawing drawing(seed);
        const DatabaseContent base = drawing.database();
        DatabaseContent ours = base;
        DatabaseContent theirs = base;
        for (DatabaseContent *side : {&ours, &theirs})
            for (int edits = drawing.below(4); edits > 0; --edits)
                drawing.edit(*side);
        const bool hasKey = drawing.below(2) == 0;
        // As a usual one: what is drawn may have no table with that field.
        const KeyChoice keys({}, hasKey ? std::vector<ChosenKey>{{{}, {u"Id"_s}}} : std::vector<ChosenKey>());
        const MergedContent result = mergeContents(base, ours, theirs, keys);
        (result.conflicts.empty() ? merges : conflicts) += 1;
        const QString problem = Check(base, ours, theirs, result, hasKey).problem();
        QByteArray lines;
        for (const Conflict &conflict : result.conflicts)
            appendConflict(lines, conflict);
        ASSERT_EQ(problem.toStdString(), "") << "seed " << seed << (hasKey ? ", by Id" : ", by position") << "\nBASE\n"
                                             << shown(base).toStdString() << "OURS\n"
                                             << shown(ours).toStdString() << "THEIRS\n"
                                             << shown(theirs).toStdString() << "RESULT\n"
                                             << shown(result.content).toStdString() << lines.toStdString();
    }
    // Both kinds are among what was drawn, or the rest says little.
    EXPECT_GT(conflicts, triples / 20);
    EXPECT_GT(merges, triples / 4);
}

/// Numbered records; "Name" tells for the test which is which.
TableContent numbered(const std::vector<RecordValues> &named) {
    TableContent table{
        u"A"_s,
        {{u"No"_s, FieldType::Long, 0}, {u"Name"_s, FieldType::Text, 9}, {u"Speed"_s, FieldType::Long, 0}},
        named};
    double number = 0;
    for (RecordValues &record : table.records)
        record[0] = ++number;
    return table;
}

TEST(MergeProperty, AnEditReachesItsRecordThoughTheOtherSideInsertsOrMovesSomeAndNumbersAllAnew) {
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Drawing drawing(seed);
        std::vector<RecordValues> records;
        for (int i = 2 + drawing.below(5); i > 0; --i)
            records.push_back({0.0, u"P-%1"_s.arg(i), 100.0 * i});
        const auto size = static_cast<int>(records.size());
        const DatabaseContent base{{numbered(records)}};
        const auto at = static_cast<std::size_t>(drawing.below(size));
        DatabaseContent theirs = base;
        theirs.tables[0].records[at][2] = 7.0;
        if (drawing.below(2) == 0) {
            const double speed = 100.0 * (1 + drawing.below(size));
            records.insert(records.begin() + drawing.below(size), {0.0, u"new"_s, speed});
        } else {
            const int moved = drawing.below(size - 1);
            std::swap(records[static_cast<std::size_t>(moved)], records[static_cast<std::size_t>(moved) + 1]);
        }
        const MergedContent result = mergeContents(base, {{numbered(records)}}, theirs, KeyChoice());
        const QVariant name = base.tables[0].records[at][1];
        bool isThere = !result.conflicts.empty();
        for (const RecordValues &record : result.content.tables[0].records)
            isThere = isThere || (record[1] == name && record[2] == 7.0);
        ASSERT_TRUE(isThere) << "seed " << seed << '\n' << shown(result.content).toStdString();
    }
}

} // namespace

} // namespace qir
