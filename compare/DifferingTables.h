#pragma once

#include "compare/engine/TableComparison.h"
#include "pane/EditorContext.h"

#include <QSet>
#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>

namespace qir {

class YieldTimer;

/// Which tables differ, and the marks that tell it: " !" behind a line of both lists, red cells in both grids.
class DifferingTables {
public:
    explicit DifferingTables(EditorContext &editor)
        : m_editor(editor) {}

    /// Compares every table that both databases hold and marks or clears its line in both lists. Leaves each
    /// component's current table at the last one compared. The names are accepted and not used. Reads a table no
    /// further than its first difference. Yields.
    void IndividuaTabelleDiverse(const QStringList &elencoUnico);
    /// Compares one table and marks or clears its line, when both lists have it on the same line.
    void markTable(const QString &name);
    /// Compares the current tables of both databases value by value over records 1..R and fields 1..F that both have,
    /// and sets `matrix` (record, field) where they differ. Elements beyond both R and F are set. Calls `step`
    /// after each record. Yields. Two tables that were found equal, and not written to since, are not read again.
    void TabelleDiverseBool(int R, int F, BitMatrix &matrix, const ComparisonStep &step = {});
    /// Gives line `index` of both lists the marker " !", or takes it away. Does nothing for an index below 0 or when
    /// the lists differ in length.
    void SettaTabelleUgualiDiverse(bool different, int index);
    /// Marks the selected line by whether CelleDiverse holds any difference; without both grids there is none. Does
    /// nothing while the selected lines of the two lists stand for different tables.
    void MostraTabellaDiversaInLista();
    /// Paints a cell red where CelleDiverse says it differs, white elsewhere; nothing outside the grid.
    void SetEqualColor(int pane, int row, int column);

private:
    /// Whether the tables on a line differ, once it is marked; nothing when one of the databases lacks it.
    std::optional<bool> compareLine(int line, YieldTimer &timer);
    std::array<std::uint64_t, 2> revisions() const;
    bool currentTablesKnownEqual() const;

    EditorContext &m_editor;
    /// Keys of the tables that are equal in both databases, as long as neither has another revision than then.
    QSet<QString> m_equalTables;
    std::array<std::uint64_t, 2> m_equalAt{};
};

} // namespace qir
