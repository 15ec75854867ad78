#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "compare/conflicts/ConflictReader.h"
#include "compare/conflicts/TakenSide.h"
#include "tests/cli/merge/DrawnMerge.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using test::Drawing;
using test::shown;
using Kind = ConflictStanding::Kind;

const char *nameOf(Kind kind) {
    switch (kind) {
    case Kind::Ours:
        return "ours";
    case Kind::Theirs:
        return "theirs";
    case Kind::Other:
        return "other";
    case Kind::Missing:
        return "missing";
    case Kind::Several:
        return "several";
    case Kind::Whole:
        break;
    }
    return "whole";
}

/// What a merge has left in a database, with its list of conflicts as a file has it.
class Resolving {
public:
    explicit Resolving(std::uint64_t seed) {
        Drawing drawing(seed);
        m_base = drawing.database();
        m_ours = m_base;
        m_theirs = m_base;
        for (DatabaseContent *side : {&m_ours, &m_theirs})
            for (int edits = drawing.below(4); edits > 0; --edits)
                drawing.edit(*side);
        const bool hasKey = drawing.below(2) == 0;
        const KeyChoice keys({}, hasKey ? std::vector<ChosenKey>{{{}, {u"Id"_s}}} : std::vector<ChosenKey>());
        const MergedContent merged = mergeContents(m_base, m_ours, m_theirs, keys);
        for (const Conflict &conflict : merged.conflicts)
            appendConflict(m_lines, conflict);
        if (!m_lines.isEmpty())
            m_conflicts = readConflicts(m_lines).value();
        writeContent(m_database, merged.content);
        m_standings = standingsOf(m_database, m_conflicts);
    }

    std::size_t count() const { return m_conflicts.size(); }
    const std::vector<ConflictStanding> &standings() const { return m_standings; }

    /// Takes a side wherever that can be written, and gives the places of what then does not stand as it has it.
    std::vector<std::size_t> take(ConflictSide side) {
        std::vector<TakenSide> taken;
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < m_conflicts.size(); ++i)
            if (takingOf(m_conflicts[i], m_standings[i], side) == Taking::Write) {
                taken.push_back({&m_conflicts[i], m_standings[i], side});
                places.push_back(i);
            }
        writeSides(m_database, taken);
        m_written += taken.size();
        m_standings = standingsOf(m_database, m_conflicts);
        const Kind wanted = side == ConflictSide::Ours ? Kind::Ours : Kind::Theirs;
        std::erase_if(places, [&](std::size_t i) { return m_standings[i].kind == wanted; });
        return places;
    }
    std::size_t written() const { return m_written; }

    std::string told(const std::vector<std::size_t> &places = {}) const {
        QString text = u"BASE\n"_s + shown(m_base) + u"OURS\n"_s + shown(m_ours) + u"THEIRS\n"_s + shown(m_theirs) +
                       u"NOW\n"_s + shown(readContent(m_database)) + QString::fromUtf8(m_lines);
        for (const ConflictStanding &standing : m_standings)
            text += QLatin1StringView(nameOf(standing.kind)) + u' ';
        for (const std::size_t place : places)
            text += u"\nwrong: %1"_s.arg(place + 1);
        return text.toStdString();
    }

private:
    DatabaseContent m_base;
    DatabaseContent m_ours;
    DatabaseContent m_theirs;
    QByteArray m_lines;
    QirDatabase m_database = QirDatabase::create();
    std::vector<Conflict> m_conflicts;
    std::vector<ConflictStanding> m_standings;
    std::size_t m_written = 0;
};

TEST(TakenSides, WhatIsTakenOfAnyMergeStandsAsThatSideHasIt) {
    const UseFake fake;
    std::size_t conflicts = 0;
    std::size_t written = 0;
    for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
        Resolving resolving(seed);
        for (const ConflictStanding &standing : resolving.standings())
            EXPECT_TRUE(standing.kind != Kind::Other && standing.kind != Kind::Missing)
                << "seed " << seed << ": the merge itself is told as a change\n"
                << resolving.told();
        const auto recordsAreKnown = [&] {
            return std::ranges::none_of(resolving.standings(), [](const ConflictStanding &standing) {
                return standing.identity == ConflictStanding::Identity::Differs;
            });
        };
        EXPECT_TRUE(recordsAreKnown()) << "seed " << seed << '\n' << resolving.told();
        for (const ConflictSide side : {ConflictSide::Theirs, ConflictSide::Ours}) {
            const std::vector<std::size_t> wrong = resolving.take(side);
            EXPECT_TRUE(wrong.empty()) << "seed " << seed << ", side " << static_cast<int>(side) << '\n'
                                       << resolving.told(wrong);
            EXPECT_TRUE(recordsAreKnown()) << "seed " << seed << ", taken\n" << resolving.told();
        }
        conflicts += resolving.count();
        written += resolving.written();
    }
    // Most can be taken from either side, or the rest says little.
    EXPECT_GT(written, conflicts * 3 / 2) << conflicts;
}

} // namespace

} // namespace qir
