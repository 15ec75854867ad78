#pragma once

#include "tests/tools/ComponentPath.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

namespace qir {

struct CliComponent {
    const char *name;
    const char *folder;
};
inline void PrintTo(const CliComponent &component, std::ostream *out) {
    *out << component.name;
}

/// What a run of the program came to.
struct Outcome {
    int status;
    QByteArray output;
    QByteArray errors;
};

/// Runs the real program on files in a folder of its own, with one component or the other.
class ProgramTest : public testing::TestWithParam<CliComponent> {
protected:
    ProgramTest();

    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// The folder is the current one of the run, so that files go by their names.
    Outcome run(const QStringList &arguments, const QByteArray &input = QByteArray()) const;
    /// Expects status 0 and nothing on the error output; gives the output.
    QByteArray done(const QStringList &arguments, const QByteArray &input = QByteArray()) const;
    /// Expects status 2, this line on the error output and no other output.
    void trouble(const QStringList &arguments, const QByteArray &errorLine) const;
    /// Runs the program on a terminal of its own that types these lines, each once the program asks. Gives all that
    /// the terminal showed.
    Outcome runOnTerminal(const QStringList &arguments, const QList<QByteArray> &lines) const;

    void write(const QString &name, const QByteArray &bytes) const;
    QByteArray bytesOf(const QString &name) const;
    /// A database file whose tables are imported from CSV texts, each a name and a text.
    void make(const QString &file, const QList<std::pair<QString, QByteArray>> &tables) const;
    /// PUMP.DDB with a table "Pumps" of two records.
    void makePumps() const;

private:
    QTemporaryDir m_folder;
    ComponentPath m_componentPath;
};

} // namespace qir
