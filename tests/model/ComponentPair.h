#pragma once

#include "qirtbase/clsQirDatabase.h"
#include "tests/model/Choices.h"
#include "tests/model/ComponentModel.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <stdexcept>
#include <vector>

namespace qir::test {

/// Component and model do not do the same.
struct Differs : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A component and the model of its rules, kept side by side: each call is drawn by the choices and made on both, and
/// both carry it out or both refuse. Throws Differs.
class ComponentPair {
public:
    /// `choices` must outlive the pair.
    explicit ComponentPair(Choices &choices)
        : m_choices(choices) {
        m_database->BeginStep({}, {}); // so that steps are kept
        m_database->EndStep();
    }

    void callAtRandom();
    /// Undoes, makes again or goes to a step; begins or ends one.
    void stepAtRandom();
    void save();
    void revert();
    /// Another password, or none; now and then by a wrong one, which is refused.
    void passwordAtRandom();
    void setPassword(const QString &password);
    /// That opens the file from the next save on.
    const QString &password() const { return m_model.password(); }
    /// From now on this instance is the component, after the one before has died.
    void recovered(clsQirDatabase &database);
    /// The same, after the one before was released with nothing unsaved.
    void reopened(clsQirDatabase &database);
    void undoAll();
    const ComponentModel &model() const { return m_model; }
    /// All that the members show of the current table and of the list of tables.
    void compare();
    /// Every table, after the calls; ends all groups.
    void compareAll();
    void endGroups();

private:
    template<class OnModel, class OnDatabase>
    void both(OnModel onModel, OnDatabase onDatabase);
    int number(int count);
    int fieldNumber();
    void choose();
    std::vector<QString> names();
    void write();
    void writeColumn();
    void compareColumn(int place, const PlainTable &table);
    void changeRecordsOrFields();
    void changeFields(int operation);
    void changeTables(int operation);
    void failedCommand();
    void typeAndTakeBack();
    void sort();
    void compareField(int place, const PlainTable &table, int pointer);
    void compareSteps();
    void compareTable(const PlainTable &table, int pointer);

    Choices &m_choices;
    ComponentModel m_model;
    std::unique_ptr<clsQirDatabase> m_own = std::make_unique<clsQirDatabase>();
    clsQirDatabase *m_database = m_own.get();
    QStringList m_texts;
};

} // namespace qir::test
