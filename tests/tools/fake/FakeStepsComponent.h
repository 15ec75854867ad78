#pragma once

#include "tests/tools/fake/FakeComponent.h"

namespace qir {

/// The fake with the members for taking steps back. A change is found by comparing with what was there at the call
/// before: everything is shared, so that this is quick.
class FakeStepsComponent final : public FakeComponent {
    Q_OBJECT

public:
    Q_INVOKABLE void BeginStep(const QString &name, const QString &key);
    Q_INVOKABLE void EndStep();
    Q_INVOKABLE void Undo();
    Q_INVOKABLE void Redo();
    Q_INVOKABLE QString UndoName() const;
    Q_INVOKABLE QString RedoName() const;
    Q_INVOKABLE int StepsCount() const;
    Q_INVOKABLE int StepsDone() const;
    Q_INVOKABLE QString StepName(int step) const;
    Q_INVOKABLE double StepTime(int step) const;
    Q_INVOKABLE bool StepsDropped() const;
    Q_INVOKABLE void GoToStep(int done);
    Q_INVOKABLE QString ChangedTable() const;
    Q_INVOKABLE int ChangedRecord() const;
    Q_INVOKABLE int ChangedField() const;
    Q_INVOKABLE int ChangedTables() const;
    Q_INVOKABLE void RevertToSaved(const QString &name);

private:
    using Tables = QList<fake::Table>;
    struct Step {
        QString name;
        QString key;
        qint64 time;
        Tables before;
        Tables after;
    };
    struct Place {
        QString table;
        int record = 0;
        int field = 0;
        int tables = 0;
    };

    void beforeCall() const override;
    void keepStep(const QString &name, const QString &key) const;
    void goTo(const Tables &tables);
    void requireNoGroup() const;

    // What a call before has changed is noticed by the next one, whatever that is.
    mutable QList<Step> m_steps;
    mutable qsizetype m_done = 0;
    mutable Tables m_known;
    mutable Tables m_saved;
    QList<qsizetype> m_openSteps; // how many groups were open when each began
    QString m_name;
    QString m_key;
    Place m_place;
};

} // namespace qir
