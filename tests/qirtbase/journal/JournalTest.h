#pragma once

#include "tests/qirtbase/journal/JournalSupport.h"

#include <gtest/gtest.h>

namespace qir {

inline const QString secret = QStringLiteral("secret");

inline QString textIn(const Table &table, std::size_t field, std::size_t record) {
    QString text;
    table.field(field).column.readText(record, text);
    return text;
}

/// A saved database of one table: On (bool), Speed (long), Name (text) and three records.
QByteArray pumps();

/// A database file with its journal, protected or open.
class JournalTest : public testing::TestWithParam<bool> {
protected:
    JournalTest() {
        if (GetParam())
            bench.keys() = keysOf(secret);
        bench.setSaved(pumps());
        bench.open();
    }
    Table &table() { return bench.database().table(0); }
    void setName(std::size_t record, const QString &name) { bench.database().setText(table(), 2, record, name); }
    QString nameAt(std::size_t record) { return textIn(table(), 2, record); }
    /// Crashes and opens again; gives what was there before.
    QByteArray crashAndOpen() {
        const QByteArray before = bench.body();
        bench.crash();
        bench.open();
        return before;
    }

    /// Puts records at the end of the journal, sealed as they should be.
    void appendRecords(const std::vector<QByteArray> &payloads);

    JournalBench bench;
};

/// Every test once with a protected and once with an open file.
#define QIR_FOR_BOTH_FILES(Suite)                                                                                      \
    INSTANTIATE_TEST_SUITE_P(Of, Suite, testing::Bool(),                                                               \
                             [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; })

} // namespace qir
