#include "qirtbase/journal/JournalCodec.h"
#include "tests/qirtbase/journal/JournalTest.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

// ---- damage: the longest whole prefix, never anything else

class DamagedJournal : public JournalTest {
protected:
    DamagedJournal() {
        m_states.push_back(bench.body());
        const auto step = [&] { m_states.push_back(bench.body()); };
        setName(0, u"one"_s);
        step();
        bench.database().beginGroup();
        setName(1, u"two"_s);
        setName(2, u"three"_s);
        bench.database().endGroup();
        step();
        bench.crash();
        bench.open(); // a second segment
        bench.clearNotices();
        bench.database().addRecord(table());
        step();
        setName(3, u"four"_s);
        step();
        bench.crash();
        m_path = bench.journalPath();
        m_content = contentOf(m_path);
    }
    /// Opens with this content in the journal's place; gives the number of the state that came back.
    int stateWith(const QByteArray &content) {
        bench.crash();
        for (const QString &name : bench.journals())
            QFile::remove(bench.journalFolderPath() + u'/' + name);
        writeContent(m_path, content);
        bench.open();
        const auto found = std::find(m_states.begin(), m_states.end(), bench.body());
        return found == m_states.end() ? -1 : static_cast<int>(found - m_states.begin());
    }

    std::vector<QByteArray> m_states;
    QString m_path;
    QByteArray m_content;
};
QIR_FOR_BOTH_FILES(DamagedJournal);

TEST_P(DamagedJournal, CutAnywhereGivesAPrefix) {
    int last = 0;
    for (qsizetype size = 0; size <= m_content.size(); ++size) {
        const int state = stateWith(m_content.first(size));
        EXPECT_GE(state, last) << size;
        last = state;
    }
    EXPECT_EQ(last, static_cast<int>(m_states.size()) - 1);
}

TEST_P(DamagedJournal, EverySingleBitChangeGivesAPrefix) {
    for (qsizetype i = 0; i < m_content.size(); ++i) {
        QByteArray content = m_content;
        content[i] = static_cast<char>(content[i] ^ (1 << (i % 8)));
        const int state = stateWith(content);
        EXPECT_GE(state, 0) << i;
        EXPECT_LT(state, static_cast<int>(m_states.size()) - 1) << i;
    }
}

TEST_P(DamagedJournal, BytesBehindTheEndAreCutAndWritingGoesOn) {
    EXPECT_EQ(stateWith(m_content + QByteArray(1000, '\x7f')), static_cast<int>(m_states.size()) - 1);
    setName(0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"after"_s);
}

TEST_P(DamagedJournal, AfterATornRecordWritingGoesOn) {
    for (qsizetype size = m_content.size() - 60; size < m_content.size(); ++size) {
        stateWith(m_content.first(size));
        setName(0, u"after %1"_s.arg(size));
        EXPECT_EQ(bench.body(), crashAndOpen()) << size;
        EXPECT_EQ(nameAt(0), u"after %1"_s.arg(size));
    }
}

TEST_P(DamagedJournal, ACrashAtAnyCallOfItsRecoveryLosesNothingOfIt) {
    QByteArray content = m_content;
    content[content.size() - 1] = static_cast<char>(content[content.size() - 1] ^ 1);
    ASSERT_EQ(stateWith(content), static_cast<int>(m_states.size()) - 2);
    const JournalBase base = bench.base();
    const QByteArray body = pumps();
    int cases = 0;
    for (Fault fault{.at = 0, .number = EIO, .forever = true};; ++fault.at) {
        bench.crash();
        for (const QString &name : bench.journals())
            QFile::remove(bench.journalFolderPath() + u'/' + name);
        writeContent(m_path, content);
        FailingFileOps ops(fault);
        Database database = std::move(*decodeBody(body));
        (void)recoverJournals(ops,
                              {.stateFolder = bench.folder(),
                               .base = base,
                               .keys = bench.keys(),
                               .password = {},
                               .deriveKey = deriveMasterKey,
                               .random = RandomSource::system(),
                               .keepAside = {}},
                              database);
        bench.open();
        EXPECT_EQ(bench.body(), m_states[m_states.size() - 2]) << fault.at;
        const auto isWhole = [&](const QString &name) {
            return contentOf(bench.journalFolderPath() + u'/' + name).startsWith(content);
        };
        EXPECT_TRUE(std::ranges::any_of(bench.journals(), isWhole)) << fault.at;
        ++cases;
        if (!ops.faultMet())
            break;
    }
    EXPECT_GT(cases, 10);
}

TEST_P(DamagedJournal, OtherFilesInTheFolderAreLeftAlone) {
    const QStringList names = {u"x"_s, u"01010101010101010101010101010101-zzzzzzzz"_s,
                               u"01010101010101010101010101010101-00000000"_s};
    for (const QString &name : names)
        writeContent(bench.journalFolderPath() + u'/' + name, "no journal");
    EXPECT_TRUE(bench.journals().size() > 3);
    bench.open();
    for (const QString &name : names)
        EXPECT_EQ(contentOf(bench.journalFolderPath() + u'/' + name), "no journal");
}

TEST_P(DamagedJournal, WhatCannotBeReadIsKeptWhereTheUserIsToldThatItIs) {
    // In the head, in the first record, in the last one.
    for (const qsizetype at :
         {static_cast<qsizetype>(100), static_cast<qsizetype>(m_content.indexOf("\xff\xff\xff\xff") + 60),
          static_cast<qsizetype>(m_content.size() - 1)}) {
        QByteArray content = m_content;
        content[at] = static_cast<char>(content[at] ^ 1);
        bench.clearNotices();
        stateWith(content);
        const QStringList kept = bench.journals().filter(u".ended"_s);
        ASSERT_EQ(kept.size(), 1) << at;
        const QString path = bench.journalFolderPath() + u'/' + kept[0];
        EXPECT_TRUE(contentOf(path).startsWith(content)) << at; // retiring adds a mark
        EXPECT_TRUE(bench.notices().join(u'\n').contains(path)) << bench.notices().join(u'\n').toStdString();
    }
}

TEST_P(JournalTest, OperationsThatMakeNoSenseEndTheReplayWithoutHarm) {
    // Well-formed records, as somebody could write them into an open file's journal.
    const auto number = [](std::uint32_t value) { return QByteArray(reinterpret_cast<const char *>(&value), 4); };
    const QByteArray table0 = number(0);
    const std::vector<QByteArray> payloads = {
        QByteArray("\x00", 1),
        QByteArray("\xff", 1),
        QByteArray("\x01"),           // a table without a name
        "\x01" + number(5) + "ab",    // a name that is not all there
        "\x03" + number(7),           // no such table
        "\x09" + table0 + number(99), // no such record
        "\x0a" + table0 + number(9) + number(0) + QByteArray(8, '\0'),
        "\x0a" + table0 + number(1) + number(0) + QByteArray::fromHex("000000000000f07f"), // infinite
        QByteArray("\x15"),                                                                // an end without a beginning
        QByteArray("\x16"),
        QByteArray("\x17"),
        "\x19" + table0, // an image of nothing
        QByteArray("\x1a"),
        "\x14\x18" + number(3) + "abc\x19" + table0 + "\x15", // an image that is none
        "\x14\x08" + table0 + "\x1a\x15",                     // changes and an image together
        QByteArray(1000, '\x14'),                             // groups without end
        "\x14" + QByteArray(100, '\x14') + QByteArray(102, '\x15'),
        "\x04" + table0 + "\x05" + QByteArray(8, '\0') + number(1) + "n", // no such type
    };
    for (const QByteArray &payload : payloads) {
        setName(0, u"good"_s);
        bench.crash();
        appendRecords({payload, "\x08" + table0}); // the second one must not count any more
        bench.open();
        EXPECT_EQ(nameAt(0), u"good"_s) << payload.toHex().toStdString();
        EXPECT_EQ(table().recordCount(), 3U) << payload.toHex().toStdString();
        bench.journal().discard();
        bench.open();
    }
}

} // namespace
} // namespace qir
