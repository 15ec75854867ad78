#pragma once

#include "pane/EditorContext.h"

#include <QStringList>

#include <optional>

namespace qir {

class EqualTables;
class YieldTimer;

/// Which tables differ, and the marks that tell it: " !" behind a line of both lists.
class TableMarks {
public:
    TableMarks(EditorContext &editor, EqualTables &equal)
        : m_editor(editor)
        , m_equal(equal) {}

    /// Compares every table that both databases hold and marks or clears its line in both lists. Leaves each
    /// component's current table at the last one compared. The names are accepted and not used. Reads a table no
    /// further than its first difference. Yields.
    void IndividuaTabelleDiverse(const QStringList &elencoUnico);
    /// Compares one table and marks or clears its line, when both lists have it on the same line.
    void markTable(const QString &name);
    /// Gives line `index` of both lists the marker " !", or takes it away. Does nothing for an index below 0 or when
    /// the lists differ in length.
    void SettaTabelleUgualiDiverse(bool different, int index);
    /// Marks the selected line by whether CelleDiverse holds any difference; without both grids there is none. Does
    /// nothing while the selected lines of the two lists stand for different tables.
    void MostraTabellaDiversaInLista();

private:
    /// Marks a line and tells whether its tables differ; nothing when one of the databases lacks the table.
    std::optional<bool> compareLine(int line, YieldTimer &timer);

    EditorContext &m_editor;
    EqualTables &m_equal;
};

} // namespace qir
