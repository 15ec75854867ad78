#include "base/columns/ColumnBuilder.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/Database.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qir;
using qir::test::plain;

namespace {

long allocationsLeft = -1; // before one fails; negative: none fails

} // namespace

// Replaced for this whole program, for Qt's arrays too: the allocation that is due fails, once. Where a sanitizer has
// its own allocation, that is the one behind.
extern "C" {
[[gnu::weak]] void *__interceptor_malloc(std::size_t size);
[[gnu::weak]] void *__interceptor_realloc(void *memory, std::size_t size);
void *__libc_malloc(std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);

[[gnu::visibility("default")]] void *malloc(std::size_t size) {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0)
        return nullptr;
    return __interceptor_malloc ? __interceptor_malloc(size) : __libc_malloc(size);
}
[[gnu::visibility("default")]] void *realloc(void *memory, std::size_t size) {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0)
        return nullptr;
    return __interceptor_realloc ? __interceptor_realloc(memory, size) : __libc_realloc(memory, size);
}
}

void *operator new(std::size_t size) {
    if (void *memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

constexpr int longCode = 4;
constexpr int textCode = 10;

using Change = std::function<void(Database &)>;

struct NamedChange {
    const char *name;
    Change change;
};

/// Two tables, the first with a text and a number field and 40 records.
Database made() {
    Database database;
    database.addTable(u"T"_s);
    database.addField(database.table(0), u"Number"_s, longCode, 0);
    for (int record = 1; record < 40; ++record) {
        database.addRecord(database.table(0));
        database.setText(database.table(0), 0, static_cast<std::size_t>(record), u"text %1"_s.arg(record));
        database.setNumber(database.table(0), 1, static_cast<std::size_t>(record), record);
    }
    database.addTable(u"U"_s);
    return decodeBody(encodeBody(database)).value(); // as loaded: every column just as large as it must be
}

const std::vector<NamedChange> changes = {
    {"addTable", [](Database &d) { d.addTable(u"New"_s); }},
    {"renameTable", [](Database &d) { d.renameTable(0, u"New"_s); }},
    {"removeTable", [](Database &d) { d.removeTable(0); }},
    {"addField", [](Database &d) { d.addField(d.table(0), u"New"_s, textCode, 5); }},
    {"renameField", [](Database &d) { d.renameField(d.table(0), 1, u"New"_s); }},
    {"removeField", [](Database &d) { d.removeField(d.table(0), 0); }},
    {"resizeField", [](Database &d) { d.resizeField(d.table(0), 0, 3); }},
    {"addRecord", [](Database &d) { d.addRecord(d.table(0)); }},
    {"removeRecord", [](Database &d) { d.removeRecord(d.table(0), 3); }},
    {"setNumber", [](Database &d) { d.setNumber(d.table(0), 1, 3, 99); }},
    {"setNumberOfText", [](Database &d) { d.setNumber(d.table(0), 0, 3, 99); }},
    {"setText", [](Database &d) { d.setText(d.table(0), 0, 3, u"x"_s.repeated(50)); }},
    {"setWideText", [](Database &d) { d.setText(d.table(0), 0, 3, u"\u20AC"_s.repeated(50)); }},
    {"setBlock",
     [](Database &d) {
         ColumnBuilder numbers(ColumnType::Long);
         for (int i = 0; i < 30; ++i)
             numbers.add(-i);
         d.setBlock(d.table(0), 1, 5, numbers.take());
     }},
    {"setBlockOfTexts",
     [](Database &d) {
         ColumnBuilder texts(ColumnType::Text);
         for (int i = 0; i < 30; ++i)
             texts.add(u"much longer than before \u20AC"_s.repeated(3));
         d.setBlock(d.table(0), 0, 5, texts.take());
     }},
    {"addRecords", [](Database &d) { d.addRecords(d.table(0), 100'000); }},
    {"rewriteTable",
     [](Database &d) {
         for (std::size_t record = 0; record < 40; ++record)
             d.setText(d.table(0), 0, record, u"y"_s.repeated(40));
     }},
};

/// Runs `change` with the 1st, 2nd, 3rd ... allocation failing until none fails; `check` looks at what each failure
/// left. Gives the number of failures.
long failEachAllocation(const std::function<Database()> &make, const Change &change,
                        const std::function<void(Database &)> &check) {
    for (long n = 0;; ++n) {
        Database database = make();
        allocationsLeft = n;
        bool failed = false;
        try {
            change(database);
        } catch (const std::bad_alloc &) {
            failed = true;
        }
        allocationsLeft = -1;
        if (!failed)
            return n;
        check(database);
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "at allocation " << n;
            return n;
        }
    }
}

TEST(OutOfMemory, AChangeThatFailsChangesNothing) {
    const auto before = plain(made());
    long failures = 0;
    for (const auto &[name, change] : changes) {
        if (std::string_view(name) == "rewriteTable")
            continue; // many changes
        SCOPED_TRACE(name);
        failures += failEachAllocation(made, change, [&](Database &database) { EXPECT_EQ(plain(database), before); });
    }
    EXPECT_GE(failures, 10); // else the test's own malloc is not the one in use
}

TEST(OutOfMemory, AGroupIsUndoneWhereverItFailed) {
    const auto before = plain(made());
    for (const auto &[name, change] : changes) {
        SCOPED_TRACE(name);
        const auto grouped = [&change = change](Database &database) {
            database.beginGroup();
            change(database);
            database.addRecord(database.table(0));
            change(database);
        };
        failEachAllocation(
            made,
            [&](Database &database) {
                try {
                    grouped(database);
                } catch (const std::runtime_error &) {
                    // The same name twice: a refusal, no lack of memory.
                }
            },
            [&](Database &database) {
                if (database.hasOpenGroup())
                    database.undoGroup();
                EXPECT_EQ(plain(database), before);
            });
    }
}

TEST(OutOfMemory, ChangesThatAJournalTellsAreNotTakenForOnesThatCannotBeMade) {
    QByteArray payload;
    encodeChange(payload, {.kind = ChangeKind::AddTable, .text = u"New"}, 0);
    encodeChange(payload, {.kind = ChangeKind::AddRecord}, 0);
    encodeChange(payload, {.kind = ChangeKind::SetText, .index = 0, .record = 3, .text = u"typed and typed and typed"},
                 0);
    const long failures = failEachAllocation(
        made,
        [&](Database &database) {
            JournalReplay replay(database);
            EXPECT_TRUE(replay.feed(payload)) << "with too little memory";
        },
        [](Database &) {});
    EXPECT_GE(failures, 5);
}

TEST(OutOfMemory, AnUndoThatFailsCanBeTriedAgain) {
    const auto longTexts = [] {
        Database database = made();
        database.resizeField(database.table(0), 0, 500);
        for (std::size_t record = 0; record < 40; ++record)
            database.setText(database.table(0), 0, record, u"z"_s.repeated(400));
        return database;
    };
    const auto before = plain(longTexts());
    const auto withGroup = [&] {
        Database database = longTexts();
        database.beginGroup();
        while (database.table(0).recordCount() > 3) // the column gives memory back, undoing takes it again
            database.removeRecord(database.table(0), 1);
        database.setText(database.table(0), 0, 1, u"changed"_s);
        database.removeField(database.table(0), 1);
        database.removeTable(1);
        database.addTable(u"New"_s);
        return database;
    };
    const long failures = failEachAllocation(
        withGroup, [](Database &database) { database.undoGroup(); },
        [&](Database &database) {
            database.undoGroup();
            EXPECT_EQ(plain(database), before);
        });
    EXPECT_GT(failures, 1);
}

} // namespace
