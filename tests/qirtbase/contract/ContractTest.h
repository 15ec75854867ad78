#pragma once

#include "db/QirDatabase.h"
#include "tests/tools/ComponentPath.h"
#include "tests/tools/fake/FakeControl.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace qir {

/// A component that the contract is put to: a name for the test's title and the folder of its library.
struct ContractComponent {
    const char *name;
    const char *folder;
    bool columns; ///< Whether it has the members for whole columns; the fake has them where it is told to.
};
inline void PrintTo(const ContractComponent &component, std::ostream *out) {
    *out << component.name;
}

std::vector<ContractComponent> contractComponents();
std::string contractTitle(const testing::TestParamInfo<ContractComponent> &info);

/// Orders columns of the fake while it lives, of few records each.
class UseFakeColumns {
public:
    explicit UseFakeColumns(bool columns) { FakeControl::get().setColumns(columns ? 3 : 0); }
    ~UseFakeColumns() { FakeControl::get().setColumns(0); }
    UseFakeColumns(const UseFakeColumns &) = delete;
    UseFakeColumns &operator=(const UseFakeColumns &) = delete;
};

/// All that a database holds, as its members give it.
struct Content {
    struct Field {
        QString name;
        int type;
        int size;
        bool operator==(const Field &) const = default;
    };
    struct Table {
        QString name;
        std::vector<Field> fields;
        std::vector<QStringList> records; ///< Texts; element 0 is unused.
        bool operator==(const Table &) const = default;
    };
    std::vector<Table> tables;
    bool operator==(const Content &) const = default;

    /// Reads all tables; leaves another current table behind.
    static Content of(const QirDatabase &database);
};
void PrintTo(const Content &content, std::ostream *out);

/// What every component must do, whoever wrote it. Written against the gateway alone.
class ContractTest : public testing::TestWithParam<ContractComponent> {
protected:
    ContractTest();

    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// A new, empty, open database of that file name; not written yet.
    QirDatabase made(const QString &name = QStringLiteral("TEST.DDB")) const;
    /// One with table "Pumps" (fields Name text 20, Speed long, Head double; two records), chosen at record 1, the
    /// changed flag False.
    QirDatabase pumps(const QString &name = QStringLiteral("TEST.DDB")) const;
    /// Opened from a file; the test fails when it cannot be.
    QirDatabase loaded(const QString &name, const QString &password = QString()) const;
    static void save(const QirDatabase &database);
    /// Appends a table without fields and records, and chooses it.
    static void addBareTable(const QirDatabase &database, const QString &name);
    static QVariant value(const QirDatabase &database, int record, int field);
    static void setValue(const QirDatabase &database, int record, int field, const QVariant &value);
    static QString text(const QirDatabase &database, int record, int field);
    static QByteArray bytesOf(const QString &file);
    static void writeBytes(const QString &file, const QByteArray &bytes);

    /// The call raises an error in words and changes nothing: neither content nor flag nor current table and record.
    /// `database` is one of pumps().
    static void expectRefused(const QirDatabase &database, const std::function<void()> &call);

private:
    UseFakeColumns m_columns;
    QTemporaryDir m_folder;
    ComponentPath m_componentPath;
};

} // namespace qir
