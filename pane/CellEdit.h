#pragma once

#include <QtGlobal>

#include <vector>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

namespace qir {

class Grid;

/// The one cell that is edited in the whole window, whichever pane it is in.
class CellEdit {
public:
    /// A pane's cell editor, a line edit over its grid. Both must outlive this.
    void addEditor(QLineEdit &txtEdit, Grid &grid) { m_editors.push_back({&txtEdit, &grid}); }

    int row() const { return m_row; } ///< Grid row of the edited cell, -1 none.
    int column() const { return m_column; }

    void begin(int row, int column);
    /// Another number for each edit.
    int number() const { return m_number; }

    /// Ends an edit in any pane: hides the editor. Nothing is written; every keystroke was. A focus that the editor
    /// had goes to its grid.
    void end();

private:
    struct Editor {
        QLineEdit *txtEdit;
        Grid *grid;
    };

    std::vector<Editor> m_editors;
    int m_row = -1;
    int m_column = -1;
    int m_number = 0;
};

} // namespace qir
