#pragma once

#include "pane/EditorContext.h"

#include <QString>
#include <QStringList>

namespace qir {

class CellDifferences;
class TableListAlignment;
class TableLoader;

/// The lists of tables, their marks and both grids anew, where a command has changed tables of a pane's database all at
/// once: some may have come or gone or have other names.
class ListRefill {
public:
    /// What is shown of the pane's database now, before it changes.
    ListRefill(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences, TableLoader &tables,
               int pane);

    /// Tables came or went since then, or have other names.
    bool namesHaveChanged() const;
    /// Selects the table of that name, "" for the one that was selected, else the line at its place.
    void refill(const QString &table);

private:
    void selectLine(int line) const;
    void forgetLostTable() const;

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    int m_pane;
    QStringList m_names;
    QString m_selected; // the key of the selected line's name
    int m_line;
    int m_top;
};

} // namespace qir
