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
        bool isStep = false; // that group
        int edits = 0;       // that were made and not undone with a group
    };
    /// One step of the history, with all tables before and after it.
    struct Step {
        QString name;
        QString key;
        PlainDatabase before;
        PlainDatabase after;
        int numberBefore = 0; // of the states
        int numberAfter = 0;
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

    void beginStep(const QString &name, const QString &key);
    void endStep();
    void undo();
    void redo();
    void goTo(int done);
    const std::vector<Step> &steps() const { return m_steps; }
    int stepsDone() const { return m_done; }
    QString undoName() const;
    QString redoName() const;

    void save();
    /// The program has died and the file was opened again: what a journal knows is there.
    void recover();
    /// No journal knows any.
    void forgetSteps() { m_knownDone = m_knownUndone = 0; }
    /// Makes the tables what was saved last.
    void revert(const QString &name);
    /// From the next save on `replacement` opens the file. That is no step.
    void newPassword(const QString &current, const QString &replacement);
    const QString &password() const { return m_password; }

private:
    /// What a group becomes that is the outermost one.
    struct Outermost {
        State before;
        QString name;
        QString key;
        bool joins = false;
    };

    template<class Change>
    void single(Change change);
    void changed();
    void openGroup(bool isStep, const QString &name, const QString &key);
    void closeGroup();
    void keepStep(const Outermost &group);
    void dropUndone();
    void seal();
    void goTo(const PlainDatabase &content, int number);

    void requireNewTable(const QString &name, int except) const;
    static void requireNewField(const PlainTable &table, const QString &name, int except);
    void assign(QString &target, const QString &name);
    int tableAt(int number) const;
    PlainTable &current();
    int fieldAt(int number);

    State m_state;
    std::vector<State> m_groups;
    Outermost m_outermost;
    std::vector<Step> m_steps;
    int m_done = 0;
    int m_number = 0; // of the state
    int m_lastNumber = 0;
    int m_savedNumber = 0;
    QString m_password;
    bool m_hasNewPassword = false; // that is not saved
    PlainDatabase m_saved;
    int m_knownDone = 0; // steps that the journal knows
    int m_knownUndone = 0;
    int m_nextId = 1; // of a table
};

} // namespace qir::test
