#pragma once

#include "compare/engine/CarriedChange.h"
#include "pane/EditorContext.h"
#include "structure/CarryLosses.h"

#include <QCoreApplication>

#include <optional>

namespace qir {

class CellDifferences;
class TableLoader;

/// Carries differences by key to one side of the tables that both panes show. Before anything is written it tells how
/// many changes these are and the first of them, which fields are not alike and which values would not survive that;
/// these are left out on request. All of it is one step to take back.
class KeyedCarry {
    Q_DECLARE_TR_FUNCTIONS(KeyedCarry)

public:
    KeyedCarry(EditorContext &editor, CellDifferences &differences, TableLoader &tables)
        : m_editor(editor)
        , m_differences(differences)
        , m_tables(tables) {}

    /// The records and fields that the changes name are those of the shown tables as they are now.
    void carry(const CarriedChanges &carried);

private:
    struct Work;

    Work workFor(const CarriedChanges &carried);
    std::optional<bool> ask(const CarriedChanges &carried, const Work &work);
    const std::optional<FieldShape> &narrowingOf(int to, const FieldPair &field, Work &work) const;
    /// Whether a value is the same on the other side.
    bool stays(int to, const CarriedChange &change, Work &work) const;
    /// The same; counts one that is not, and tells the first.
    bool noteLoss(int to, const CarriedChange &change, Work &work) const;
    QStringList fieldsLeftBehind(const CarriedChanges &carried) const;
    qsizetype write(const CarriedChanges &carried, Work &work, bool lossesToo);
    void addRecords(const CarriedChanges &carried, Work &work, bool lossesToo);
    bool goesByColumn(int to, const FieldPair &field, Work &work, bool lossesToo) const;
    void writeValue(const CarriedChanges &carried, const CarriedChange &change) const;

    EditorContext &m_editor;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
