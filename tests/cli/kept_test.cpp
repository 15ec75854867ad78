#include "tests/cli/Program.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <unistd.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

class KeptTest : public ProgramTest {
protected:
    KeptTest()
        : m_before(qgetenv("XDG_STATE_HOME")) {
        qputenv("XDG_STATE_HOME", QFile::encodeName(path(u"state"_s)));
        makePumps();
    }
    ~KeptTest() override { qputenv("XDG_STATE_HOME", m_before); }

    /// Keeps the file as it stands under another name, and gives its pump another speed.
    void keepAs(const QString &name, const QString &speed) const {
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(name)));
        done({u"set"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, speed});
    }
    QByteArray speed(const QString &file = u"PUMP.DDB"_s) const {
        return done({u"get"_s, file, u"Pumps"_s, u"1"_s, u"Speed"_s});
    }
    QByteArrayList numbers() const {
        QByteArrayList lines = done({u"kept"_s, u"PUMP.DDB"_s, u"--json"_s}).split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

private:
    QByteArray m_before;
};

TEST_P(KeptTest, ListsTheKeptVersionsTheOldestFirst) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00 2)"_s, u"2"_s);
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"3"_s);
    keepAs(u"OTHER.DDB (conflict 2026-02-01 10.00.00)"_s, u"4"_s);
    keepAs(u"PUMP.DDB (copy 2026-02-01 10.00.00)"_s, u"5"_s);
    ASSERT_TRUE(QDir(path(u"."_s)).mkpath(u"state/qir/rescue"_s));
    keepAs(u"state/qir/rescue/PUMP (rescued 2026-01-31 23.59.59).DDB"_s, u"6"_s);
    keepAs(u"state/qir/rescue/PUMP (rescued 2026-01-31 23.59.59).WDB"_s, u"7"_s);
    const QByteArrayList lines = numbers();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_THAT(lines[0].toStdString(),
                HasSubstr("{\"number\": 1, \"kept\": \"rescued\", \"time\": \"2026-01-31T23:59:59\""));
    EXPECT_THAT(lines[1].toStdString(), HasSubstr("PUMP.DDB (conflict 2026-02-01 10.00.00)\""));
    EXPECT_THAT(lines[2].toStdString(), HasSubstr("PUMP.DDB (conflict 2026-02-01 10.00.00 2)\""));
    EXPECT_THAT(done({u"kept"_s, u"PUMP.DDB"_s}).toStdString(), HasSubstr("  2  conflict  2026-02-01 10:00:00  "));
}

TEST_P(KeptTest, RestoreTakesOneAndKeepsWhatStoodThere) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"2"_s);
    ASSERT_TRUE(QFile::setPermissions(path(u"PUMP.DDB"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    EXPECT_THAT(done({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s}).toStdString(),
                HasSubstr("PUMP.DDB: restored; what stood there is kept as PUMP.DDB (replaced "));
    EXPECT_EQ(speed(), "1500\n");
    EXPECT_EQ(QFile::permissions(path(u"PUMP.DDB"_s)) & QFile::ReadGroup, QFile::ReadGroup);
    ASSERT_EQ(numbers().size(), 2);
    EXPECT_THAT(numbers()[1].toStdString(), HasSubstr("\"number\": 2, \"kept\": \"replaced\""));
    done({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"2"_s});
    EXPECT_EQ(speed(), "2\n");
    EXPECT_EQ(numbers().size(), 3);
}

TEST_P(KeptTest, AFileThatHasGoneIsRestored) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"2"_s);
    ASSERT_TRUE(QFile::remove(path(u"PUMP.DDB"_s)));
    EXPECT_EQ(numbers().size(), 1);
    EXPECT_EQ(run({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"2"_s}).status, 1);
    EXPECT_EQ(done({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s}), "PUMP.DDB: restored; nothing stood there\n");
    EXPECT_EQ(speed(), "1500\n");
    EXPECT_EQ(numbers().size(), 1);
}

TEST_P(KeptTest, RestorePrintsJsonAndNeedsANumber) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"2"_s);
    EXPECT_EQ(run({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u""_s}).status, 2);
    EXPECT_EQ(speed(), "2\n");
    const std::string line = done({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s, u"--json"_s}).toStdString();
    EXPECT_THAT(line, testing::StartsWith("{\"file\": \"PUMP.DDB\", \"restored\": \""));
    EXPECT_THAT(line, HasSubstr("\", \"kept\": \"PUMP.DDB (replaced "));
    EXPECT_EQ(speed(), "1500\n");
}

TEST_P(KeptTest, WhatCannotBeOpenedOrIsNotThereIsNotRestored) {
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const Outcome none = run({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.errors, "qirdb: PUMP.DDB: it has no kept version 1, it has 0\n");
    write(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, "no database");
    EXPECT_EQ(run({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s}).status, 2);
    EXPECT_EQ(run({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"x"_s}).status, 2);
    trouble({u"kept"_s, u"NONE.DDB"_s}, "qirdb: NONE.DDB: there is no such file");
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    EXPECT_EQ(numbers().size(), 1);
}

TEST_P(KeptTest, AFileThatIsMarkedReadOnlyIsNotRestoredOver) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"2"_s);
    ASSERT_TRUE(QFile::setPermissions(path(u"PUMP.DDB"_s), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    trouble({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s}, "qirdb: PUMP.DDB: it is marked read-only");
    EXPECT_EQ(speed(), "2\n");
    EXPECT_EQ(numbers().size(), 1);
}

TEST_P(KeptTest, AFileThatHasFurtherNamesIsNotPartedFromThem) {
    keepAs(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s, u"2"_s);
    const QByteArray other = QFile::encodeName(path(u"OTHER.DDB"_s));
    ASSERT_EQ(::link(QFile::encodeName(path(u"PUMP.DDB"_s)).constData(), other.constData()), 0);
    trouble({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s},
            "qirdb: PUMP.DDB: it has further names (hard links), which would keep what stands there now; copy " +
                QFile::encodeName(path(u"PUMP.DDB (conflict 2026-02-01 10.00.00)"_s)) + " over it by hand");
    EXPECT_EQ(speed(), "2\n");
    EXPECT_EQ(numbers().size(), 1);
    ASSERT_EQ(::unlink(other.constData()), 0);
    done({u"kept"_s, u"PUMP.DDB"_s, u"--restore"_s, u"1"_s});
    EXPECT_EQ(speed(), "1500\n");
}

INSTANTIATE_TEST_SUITE_P(Component, KeptTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
