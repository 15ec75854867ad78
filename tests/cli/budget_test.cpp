#include "tests/cli/Program.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/qirtbase/model/GeneratedBodies.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int part = 20; // the program starts four times for each

/// What the commands print of a file is in proportion to its bytes and cells, whatever its shape.
class BudgetTest : public ProgramTest {
protected:
    void expectProportional(const GeneratedBody &made) const {
        SCOPED_TRACE(made.name);
        write(u"FILE.DDB"_s, containerBytes(made.bytes));
        const auto bytes = static_cast<std::size_t>(made.bytes.size());
        EXPECT_EQ(done({u"verify"_s, u"FILE.DDB"_s}), "FILE.DDB: sound\n");
        const auto sizeOf = [&](const QStringList &arguments) {
            return static_cast<std::size_t>(done(arguments + QStringList{u"FILE.DDB"_s}).size());
        };
        // A cell of one byte may print as blanks up to the width of its column, a field with the words around it.
        const std::size_t most = 4 * bytes + 64 * (made.cells + made.fields + made.tables) + 4096;
        EXPECT_LE(sizeOf({u"dump"_s}), most);
        EXPECT_LE(sizeOf({u"dump"_s, u"--format=json"_s}), most);
        EXPECT_LE(sizeOf({u"dump"_s, u"--format=csv"_s}), most);
        EXPECT_LE(sizeOf({u"tables"_s}), 4 * bytes + 64 * (made.fields + made.tables) + 4096);
    }
    std::size_t diffLines(const QString &left, const QString &right) const {
        const Outcome result = run({u"diff"_s, left, right});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors, "");
        return static_cast<std::size_t>(result.output.count('\n'));
    }
};

TEST_P(BudgetTest, WhatIsPrintedIsInProportionToBytesAndCells) {
    for (const GeneratedBody &made : extremeBodies(part))
        expectProportional(made);
    for (unsigned seed = 1; seed <= 2; ++seed)
        expectProportional(randomBody(seed));
}

TEST_P(BudgetTest, ATallAndAWideTableDifferInTheirOwnCellsAlone) {
    const auto named = [](const char *name) {
        for (const GeneratedBody &made : extremeBodies(part)) {
            if (made.name == name)
                return made;
        }
        throw std::runtime_error("no such body");
    };
    const GeneratedBody tall = named("records of empty texts"); // 10,000 x 1
    const GeneratedBody wide = named("numbers");                // 5 x 1,024
    write(u"TALL.DDB"_s, containerBytes(tall.bytes));
    write(u"WIDE.DDB"_s, containerBytes(wide.bytes));
    const std::size_t cells = tall.cells + wide.cells - 5; // which stand in both
    EXPECT_EQ(diffLines(u"TALL.DDB"_s, u"WIDE.DDB"_s), 1 + cells);
    EXPECT_EQ(diffLines(u"WIDE.DDB"_s, u"TALL.DDB"_s), 1 + cells);
    EXPECT_THAT(run({u"diff"_s, u"--summary"_s, u"TALL.DDB"_s, u"WIDE.DDB"_s}).output.toStdString(),
                testing::HasSubstr("(" + std::to_string(cells) + " cells, 10000 | 5 records, 1 | 1024 fields)"));
}

INSTANTIATE_TEST_SUITE_P(Component, BudgetTest, testing::Values(CliComponent{"Real", REAL_COMPONENT_FOLDER}),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
