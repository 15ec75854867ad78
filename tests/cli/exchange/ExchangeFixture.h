#pragma once

#include "tests/cli/Program.h"
#include "tests/cli/exchange/Exchanged.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <string>
#include <sys/stat.h>

namespace qir {

/// Runs the program, sqlite3 and what looks at their files in a folder of its own.
class ExchangeFixture : public ProgramTest {
protected:
    /// The fake keeps its tables in a form that has no byte order marks.
    static DrawnTables::Limits limits(DrawnTables::Limits limits = {}) {
        limits.hasMark = GetParam().name == std::string("Real");
        return limits;
    }
    /// FILE with the tables of these lines.
    void make(const QString &file, const QByteArray &lines) const {
        QFile::remove(path(file));
        done({QStringLiteral("create"), file});
        done({QStringLiteral("import"), file, QStringLiteral("--from"), QStringLiteral("json"), QStringLiteral("-")},
             lines);
    }
    /// The lines that FILE has after taking in SOURCE alone.
    QByteArray takenFrom(const QString &kind, const QString &source) const {
        QFile::remove(path(QStringLiteral("BACK.DDB")));
        done({QStringLiteral("create"), QStringLiteral("BACK.DDB")});
        done({QStringLiteral("import"), QStringLiteral("BACK.DDB"), QStringLiteral("--from"), kind, source});
        return done({QStringLiteral("dump"), QStringLiteral("--json"), QStringLiteral("BACK.DDB")});
    }
    QByteArray sqlite(const QStringList &arguments, const QByteArray &input = {}) const {
        QProcess shell;
        shell.setWorkingDirectory(path(QStringLiteral(".")));
        shell.start(QStringLiteral("sqlite3"), arguments);
        shell.write(input);
        shell.closeWriteChannel();
        EXPECT_TRUE(shell.waitForFinished(-1));
        EXPECT_EQ(shell.readAllStandardError(), "");
        return shell.readAllStandardOutput();
    }
    /// A.DDB and BACK.DDB have as many as the lines, of the same values.
    void expectSameTables(const QByteArray &lines) const {
        const QByteArray shown = done({QStringLiteral("diff"), QStringLiteral("A.DDB"), QStringLiteral("BACK.DDB")});
        EXPECT_EQ(shown.count("same: "), lines.count("{\"table\"")) << shown.toStdString() << lines.toStdString();
    }
    static bool hasSqlite() { return !QStandardPaths::findExecutable(QStringLiteral("sqlite3")).isEmpty(); }
    mode_t modeOf(const QString &name) const {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(path(name)).constData(), &status), 0);
        return status.st_mode & 07777;
    }
    QStringList filesBesides(const QStringList &known) const {
        QStringList files;
        for (const QString &name :
             QDir(path(QStringLiteral("."))).entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
            if (!known.contains(name))
                files += name;
        return files;
    }
};

} // namespace qir
