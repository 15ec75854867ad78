#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <cstdint>

namespace qir {

/// Marks the cells whose text is not what the component stores of it: 999 in a byte, "yes" in a number, a text that is
/// cut. What a cell that was not written here holds is not asked for: it was filled with what is stored.
class StoredMarks {
    Q_DECLARE_TR_FUNCTIONS(StoredMarks)

public:
    explicit StoredMarks(EditorContext &editor)
        : m_editor(editor) {}

    /// Gives the pane's grid its words. To be called when the controls stand.
    void connectPane(int pane);

    /// A cell was written: marks it, or takes its mark away. Its table and its record must be current in the component.
    void look(int pane, int row, int column);
    /// The same for many cells, whose table need not be current, by what becomes of their texts: the component is not
    /// asked for each. Yields.
    void lookAtWritten(int pane, const GridRange &cells);
    /// The same for cells whose texts were not all written as they show: asks for each. Yields.
    void lookAtStored(int pane, const GridRange &cells);
    /// "stored: 255" for a cell that is marked, "" for every other.
    QString words(int pane, int row, int column) const;
    /// The same at the end of a command, where its table and record may be others.
    QString wordsNow(int pane, int row, int column) const;

private:
    /// What the current record holds in a column.
    QString stored(int pane, int column) const;
    bool isLast(int pane, int row, int column) const;
    void lookByColumns(int pane, const GridRange &cells);
    void lookByRecords(int pane, const GridRange &cells);

    EditorContext &m_editor;
    /// The cell that was written last, and what was stored: who tells of it at once need not ask again.
    struct Last {
        int pane = -1;
        int row = 0;
        int column = 0;
        QString table;
        std::uint64_t revision = 0;
        QString text;
    };
    Last m_last;
};

} // namespace qir
