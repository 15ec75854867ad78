#include "base/columns/BlockOrder.h"
#include "base/columns/ColumnBuilder.h"
#include "platform/automation/AutomationError.h"
#include "tests/qirtbase/contract/ContractTest.h"

#include <cmath>
#include <limits>
#include <set>
#include <span>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int textCode = 10;
constexpr int types[] = {1, 2, 3, 4, 7, 8, textCode};

/// The members for whole columns, put to each component that has them.
class ColumnsContractTest : public ContractTest {
protected:
    /// Ten records of a field of each type, chosen.
    QirDatabase wide() const {
        QirDatabase database = made();
        addBareTable(database, u"Wide"_s);
        for (const int type : types)
            database.AddField(u"F%1"_s.arg(type), type, 6);
        for (int record = 1; record <= 10; ++record) {
            database.AddRecord();
            for (int field = 1; field <= 7; ++field)
                setValue(database, record, field, field == 7 ? QVariant(u"t\u20AC%1"_s.arg(record)) : record * 1.25);
        }
        database.setDtbHasChanged(false);
        return database;
    }
    static QStringList column(const QirDatabase &database, int field) {
        QStringList texts;
        const int records = database.QirTableRecordsCount();
        while (texts.size() < records) {
            const int left = records - static_cast<int>(texts.size());
            const ColumnBlock block = database.ReadColumn(field, static_cast<int>(texts.size()) + 1, left);
            for (qsizetype i = 0; i < block.count(); ++i)
                texts += block.text(i);
        }
        return texts;
    }
    static QStringList cells(const QirDatabase &database, int field) {
        QStringList texts;
        for (int record = 1; record <= database.QirTableRecordsCount(); ++record)
            texts += text(database, record, field);
        return texts;
    }
    static ColumnBlock longs(const std::vector<double> &values) {
        ColumnBuilder builder(ColumnType::Long);
        for (const double value : values)
            builder.add(value);
        return builder.take();
    }
    static ColumnBlock texts(const QStringList &values) {
        ColumnBuilder builder(ColumnType::Text);
        for (const QString &value : values)
            builder.add(QStringView(value));
        return builder.take();
    }
    /// Writes `block` as no builder makes it.
    static void writeRaw(const QirDatabase &database, int field, int first, const QVariant &block) {
        // Through the object: the gateway takes blocks only.
        const bool called = QMetaObject::invokeMethod(database.object(), "WriteColumn", Q_ARG(int, field),
                                                      Q_ARG(int, first), Q_ARG(QVariant, block));
        EXPECT_TRUE(called);
    }
};

TEST_P(ColumnsContractTest, AColumnReadInPiecesHoldsTheValuesOfItsCells) {
    const QirDatabase database = wide();
    ASSERT_TRUE(database.hasColumns());
    for (int field = 1; field <= 7; ++field) {
        EXPECT_EQ(column(database, field), cells(database, field)) << field;
        EXPECT_EQ(static_cast<int>(database.ReadColumn(field, 3, 1).type()), types[field - 1]);
    }
}

TEST_P(ColumnsContractTest, ReadingGivesAtMostWhatIsAskedForAndNothingBehindTheEnd) {
    const QirDatabase database = wide();
    EXPECT_EQ(database.ReadColumn(4, 2, 1).count(), 1);
    EXPECT_EQ(database.ReadColumn(4, 10, 1000).count(), 1);
    EXPECT_EQ(database.ReadColumn(4, 10, 1000).text(0), u"12"_s);
}

TEST_P(ColumnsContractTest, AWrittenBlockReplacesTheValuesFromItsRecordOn) {
    const QirDatabase database = wide();
    database.WriteColumn(4, 9, longs({7, -8}));
    database.WriteColumn(7, 1, texts({u"one"_s, u""_s, u"\U0001F600 x"_s}));
    EXPECT_EQ(cells(database, 4).mid(7), (QStringList{u"10"_s, u"7"_s, u"-8"_s}));
    EXPECT_EQ(cells(database, 7).first(4), (QStringList{u"one"_s, u""_s, u"\U0001F600 x"_s, u"t\u20AC4"_s}));
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ColumnsContractTest, RecordsThatWereReorderedAreWhatWasWrittenAndTheirStepIsTakenBack) {
    const QirDatabase database = wide();
    const QStringList before = cells(database, 4);
    std::vector<std::uint32_t> order(10);
    for (std::uint32_t record = 0; record < order.size(); ++record)
        order[record] = 9 - record;
    {
        const ChangeStep step(database, u"Sort"_s);
        for (int field = 1; field <= 7; ++field) {
            const ColumnBlock block = database.ReadColumn(field, 1, 10);
            if (block.count() < 10)
                continue; // kept in pieces: the order is not true then
            for (const ColumnBlock &part : reordered(std::span(&block, 1), order))
                database.WriteColumn(field, 1, part);
        }
        database.RecordsReordered(order);
    }
    const QStringList after = cells(database, 4);
    if (!database.hasSteps())
        return;
    EXPECT_NE(after, before);
    database.Undo();
    EXPECT_EQ(cells(database, 4), before);
    database.Redo();
    EXPECT_EQ(cells(database, 4), after);
}

TEST_P(ColumnsContractTest, WrittenValuesAreMadeToFit) {
    const QirDatabase database = wide();
    writeRaw(database, 1, 1, QVariantList{1, QByteArray("\x02\x00\xFF", 3)});
    EXPECT_EQ(cells(database, 1).first(3), (QStringList{u"1"_s, u"0"_s, u"1"_s}));
    const double numbers[] = {std::nan(""), std::numeric_limits<double>::infinity(), -0.0};
    const QByteArray bytes(reinterpret_cast<const char *>(numbers), sizeof numbers);
    writeRaw(database, 5, 1, QVariantList{7, bytes});
    EXPECT_EQ(value(database, 1, 5).toDouble(), 0);
    EXPECT_EQ(value(database, 2, 5).toDouble(), std::numeric_limits<double>::max());
    EXPECT_TRUE(std::signbit(value(database, 3, 5).toDouble()));
    database.WriteColumn(7, 1, texts({u"1234567"_s, u"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600abc"_s}));
    EXPECT_EQ(text(database, 1, 7), u"123456"_s);
    EXPECT_EQ(text(database, 2, 7), u"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600a"_s);
}

TEST_P(ColumnsContractTest, WritingWhatIsThereIsNoChange) {
    const QirDatabase database = wide();
    const double before = database.TableRevision();
    for (int field = 1; field <= 7; ++field)
        for (int record = 1; record <= 10;) {
            const ColumnBlock block = database.ReadColumn(field, record, 10);
            database.WriteColumn(field, record, block);
            record += static_cast<int>(block.count());
        }
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.TableRevision(), before);
}

TEST_P(ColumnsContractTest, AReadBlockStaysAsItIsWhateverIsWritten) {
    const QirDatabase database = wide();
    const ColumnBlock number = database.ReadColumn(4, 1, 10);
    const ColumnBlock words = database.ReadColumn(7, 1, 10);
    setValue(database, 1, 4, 99);
    setValue(database, 1, 7, u"other"_s);
    EXPECT_EQ(number.text(0), u"1"_s);
    EXPECT_EQ(words.text(0), u"t\u20AC1"_s);
    database.RemoveRecord(2);
    EXPECT_EQ(number.text(1), u"2"_s);
    EXPECT_EQ(words.text(1), u"t\u20AC2"_s);
    EXPECT_EQ(text(database, 1, 7), u"other"_s);
}

TEST_P(ColumnsContractTest, ACellWrittenAfterABlockDoesNotChangeTheBlock) {
    const QirDatabase database = wide();
    const ColumnBlock number = longs({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    const ColumnBlock words = texts({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s, u"i"_s, u"j"_s});
    database.WriteColumn(4, 1, number);
    database.WriteColumn(7, 1, words);
    setValue(database, 5, 4, 0);
    setValue(database, 5, 7, u"other"_s);
    EXPECT_EQ(number.text(4), u"5"_s);
    EXPECT_EQ(words.text(4), u"e"_s);
}

TEST_P(ColumnsContractTest, AppendedRecordsHoldZerosAndEmptyTexts) {
    const QirDatabase database = pumps();
    database.AppendRecords(5);
    EXPECT_EQ(database.QirTableRecordsCount(), 7);
    EXPECT_EQ(cells(database, 1).last(), u""_s);
    EXPECT_EQ(column(database, 2).mid(2), QStringList(5, u"0"_s));
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ColumnsContractTest, AppendingNoRecordsIsNoChange) {
    const QirDatabase database = pumps();
    const double before = database.TableRevision();
    database.AppendRecords(0);
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.TableRevision(), before);
}

TEST_P(ColumnsContractTest, TheRevisionChangesWithEveryKindOfChangeAndNotElse) {
    const QirDatabase database = pumps();
    std::set<double> seen{database.TableRevision()};
    const auto changes = [&](const char *what, const std::function<void()> &change) {
        change();
        EXPECT_TRUE(seen.insert(database.TableRevision()).second) << what;
        const double now = database.TableRevision();
        QStringList values;
        database.GetQirRecord(1, values);
        database.setQIRTableRecordsPointerOut(1);
        EXPECT_EQ(database.TableRevision(), now) << "reading after " << what;
    };
    changes("number", [&] { database.setQIRTableRecordSetByIndex(2, 5); });
    changes("text", [&] { database.setQIRTableRecordSetByIndex(1, u"x"_s); });
    changes("block of numbers", [&] { database.WriteColumn(2, 1, longs({50, 60})); });
    changes("block of texts", [&] { database.WriteColumn(1, 2, texts({u"new"_s})); });
    changes("AddRecord", [&] { database.AddRecord(); });
    changes("AppendRecords", [&] { database.AppendRecords(2); });
    changes("RemoveRecord", [&] { database.RemoveRecord(4); });
    changes("AddField", [&] { database.AddField(u"New"_s, 4); });
    changes("RenameField", [&] { database.RenameField(4, u"Newer"_s); });
    changes("ResizeField", [&] { database.ResizeField(1, 2); });
    changes("RemoveField", [&] { database.RemoveField(4); });
}

TEST_P(ColumnsContractTest, TwoTablesHaveDifferentRevisions) {
    const QirDatabase database = pumps();
    const double pump = database.TableRevision();
    database.AddTable(u"Other"_s);
    database.QIRTableRecordSource(u"Other"_s);
    EXPECT_NE(database.TableRevision(), pump);
    database.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(database.TableRevision(), pump);
}

TEST_P(ColumnsContractTest, ACancelledGroupTakesBlocksAndAppendedRecordsBack) {
    const QirDatabase database = pumps();
    const Content before = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    database.BeginChanges();
    database.AppendRecords(3);
    database.WriteColumn(2, 1, longs({9, 8, 7, 6, 5}));
    database.WriteColumn(1, 2, texts({u"n1"_s, u"n2"_s}));
    const double within = database.TableRevision();
    database.CancelChanges();
    EXPECT_NE(database.TableRevision(), within);
    EXPECT_EQ(Content::of(database), before);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ColumnsContractTest, WhatWasWrittenInBlocksIsThereAfterSaveAndLoad) {
    Content before;
    {
        const QirDatabase database = pumps();
        database.AppendRecords(3);
        database.WriteColumn(2, 1, longs({9, 8, 7, 6, 5}));
        database.WriteColumn(1, 2, texts({u"n\u20AC1"_s, u"n2"_s}));
        save(database);
        before = Content::of(database);
    }
    EXPECT_EQ(Content::of(loaded(u"TEST.DDB"_s)), before);
}

TEST_P(ColumnsContractTest, CallsThatCannotBeCarriedOutChangeNothing) {
    const QirDatabase database = pumps();
    const auto refused = [&](const char *what, const std::function<void()> &call) {
        SCOPED_TRACE(what);
        expectRefused(database, call);
    };
    refused("read no field", [&] { database.ReadColumn(4, 1, 1); });
    refused("read no record", [&] { database.ReadColumn(1, 3, 1); });
    refused("read record 0", [&] { database.ReadColumn(1, 0, 1); });
    refused("read nothing", [&] { database.ReadColumn(1, 1, 0); });
    refused("write no field", [&] { database.WriteColumn(0, 1, longs({1})); });
    refused("write no record", [&] { database.WriteColumn(2, 3, longs({1})); });
    refused("too long", [&] { database.WriteColumn(2, 2, longs({1, 2})); });
    refused("another type", [&] { database.WriteColumn(3, 1, longs({1})); });
    refused("fewer than none", [&] { database.AppendRecords(-1); });
    refused("too many", [&] { database.AppendRecords(std::numeric_limits<int>::max()); });
    refused("no UTF-8", [&] {
        ColumnBuilder builder(ColumnType::Text);
        builder.add(u"good"_s);
        builder.addUtf8("\xC3");
        database.WriteColumn(1, 1, builder.take());
    });
}

TEST_P(ColumnsContractTest, BlocksThatLieAreRefused) {
    const QirDatabase database = pumps();
    const QByteArray place = QByteArray::fromHex("0000000003000000");
    const std::vector<QVariant> blocks = {
        QVariant(),
        QVariant(5),
        QVariantList{},
        QVariantList{10},
        QVariantList{10, place},
        QVariantList{10, place, QByteArray("ab")},
        QVariantList{10, QByteArray::fromHex("FFFFFFFFFFFFFFFF"), QByteArray("ab")},
        QVariantList{10, place.first(7), QByteArray("abc")},
        QVariantList{10, place, QByteArray("abc"), QByteArray("d")},
        QVariantList{10, place, u"abc"_s},
        QVariantList{u"10"_s, place, QByteArray("abc")},
        QVariantList{9, place},
    };
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        SCOPED_TRACE(i);
        expectRefused(database, [&] { writeRaw(database, 1, 1, blocks[i]); });
    }
}

TEST_P(ColumnsContractTest, WithoutATableEachCallIsRefused) {
    const QirDatabase database = made();
    const auto isRefused = [](const std::function<void()> &call) {
        try {
            call();
        } catch (const AutomationError &) {
            return false;
        } catch (const std::exception &) {
            return true;
        }
        return false;
    };
    EXPECT_TRUE(isRefused([&] { database.ReadColumn(1, 1, 1); }));
    EXPECT_TRUE(isRefused([&] { database.WriteColumn(1, 1, longs({1})); }));
    EXPECT_TRUE(isRefused([&] { database.AppendRecords(1); }));
    EXPECT_TRUE(isRefused([&] { database.TableRevision(); }));
}

std::vector<ContractComponent> componentsWithColumns() {
    std::vector<ContractComponent> components = contractComponents();
    std::erase_if(components, [](const ContractComponent &component) { return !component.columns; });
    return components;
}

INSTANTIATE_TEST_SUITE_P(Component, ColumnsContractTest, testing::ValuesIn(componentsWithColumns()), contractTitle);

TEST_P(ContractTest, ColumnsAreThereAllTogetherOrNotAtAll) {
    EXPECT_EQ(QirDatabase::create().hasColumns(), GetParam().columns);
    const QMetaObject *metaObject = QirDatabase::create().object()->metaObject();
    for (const char *signature :
         {"ReadColumn(int,int,int)", "WriteColumn(int,int,QVariant)", "AppendRecords(int)", "TableRevision()"})
        EXPECT_EQ(metaObject->indexOfMethod(signature) >= 0, GetParam().columns) << signature;
}

} // namespace

} // namespace qir
