#pragma once

#include "compare/DifferingTables.h"
#include "platform/list/ListBox.h"

#include <QCoreApplication>

namespace qir {

/// What is said beside the colours and the marks, for eyes that do not tell red from white and for screen readers: an
/// icon for each line of the lists, and for each differing cell what stands on both sides.
class DifferenceWords {
    Q_DECLARE_TR_FUNCTIONS(DifferenceWords)

public:
    DifferenceWords(EditorContext &editor, const DifferingTables &tables)
        : m_editor(editor)
        , m_tables(tables) {}

    /// Gives lists and grids their icons and words; to be called once they stand.
    void install();

    /// "left: x, right: y" for a cell that differs; a side that lacks it is told so.
    QString ofCell(int row, int column) const;

private:
    ListBox::LineSign ofLine(int pane, int line) const;

    EditorContext &m_editor;
    const DifferingTables &m_tables;
};

} // namespace qir
