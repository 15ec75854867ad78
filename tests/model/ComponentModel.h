#pragma once

#include "tests/model/PlainDatabase.h"

#include <cstddef>
#include <stdexcept>
#include <vector>

namespace qir::test {

/// A call that the rules do not allow; nothing has changed.
struct Refused : std::runtime_error {
    Refused()
        : std::runtime_error("refused") {}
};

/// What a component does when it is called. Numbers count from 1 as in the component's members; each call throws
/// Refused where the component raises an error.
class ComponentModel {
public:
    struct State {
        PlainDatabase content;
        int current = -1; // index of a table
        int record = 0;
        bool changed = false;
        bool failed = false; // of the group that began with this state
    };

    const State &state() const { return m_state; }
    std::size_t groups() const { return m_groups.size(); }
    /// The component raised an error.
    void fail();

    void addTable(const QString &name);
    void renameTable(int number, const QString &name);
    void removeTable(int number);
    void choose(const QString &name);
    void addField(const QString &name, int type, double size);
    void renameField(int number, const QString &name);
    void removeField(int number);
    void resizeField(int number, double size);
    void addRecord();
    void removeRecord(int number);
    void point(int number);
    void write(int number, const QVariant &value);
    /// The values of a block of the field's type.
    void writeColumn(int number, int first, const QVariantList &values);
    void appendRecords(int count);
    void begin();
    void end();
    void cancel();

private:
    void requireNewTable(const QString &name, int except) const;
    static void requireNewField(const PlainTable &table, const QString &name, int except);
    void assign(QString &target, const QString &name);
    int tableAt(int number) const;
    PlainTable &current();
    int fieldAt(int number);

    State m_state;
    std::vector<State> m_groups;
};

} // namespace qir::test
