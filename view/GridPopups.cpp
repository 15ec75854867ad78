#include "view/GridPopups.h"

#include "db/FieldTypes.h"

#include "platform/grid/Grid.h"

#include <QAction>
#include <QMenu>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// The block can be copied where both grids have the same cells selected, record cells of fields of both.
bool areaCanBeCloned(EditorContext &editor) {
    const Grid &left = editor.Tabella(0);
    const Grid &right = editor.Tabella(1);
    // The empty column of a table without fields stands for none.
    return editor.gridsShowSameTable() && left.selection() == right.selection() &&
           left.selection().range().firstRow >= 1 && left.ColData(left.Col()) >= 1 && right.ColData(right.Col()) >= 1;
}

/// The other table can be made as long as this one where it has the same fields and fewer records.
bool sizeCanBeCloned(EditorContext &editor, int pane) {
    const Grid &grid = editor.Tabella(pane);
    const Grid &other = editor.Tabella(1 - pane);
    return editor.gridsShowSameTable() && grid.Cols() == other.Cols() && grid.Rows() > other.Rows();
}

} // namespace

void GridPopups::popUp(int pane, int row, int column, const QPoint &globalPosition) {
    const bool ofField = row == 0 && column >= 1;
    const bool ofRecord = row >= 1 && m_editor.Tabella(pane).Rows() > 1;
    if (!ofField && !ofRecord)
        return;
    if (ofField)
        prepareFieldItems(pane, column);
    else
        prepareRecordItems(pane);
    m_editor.setOrigin(pane);
    m_editor.controls().menu(ofField ? Menu::popmenuGridFields : Menu::popmenuGrid).popup(globalPosition);
}

void GridPopups::prepareRecordItems(int pane) {
    const EditorControls &controls = m_editor.controls();
    const Grid &grid = m_editor.Tabella(pane);
    controls.action(Command::CloneTableSizePOP).setVisible(sizeCanBeCloned(m_editor, pane));
    controls.action(Command::CloneSelectedAreaPOP).setVisible(areaCanBeCloned(m_editor));
    QAction &remove = controls.action(Command::RemoveRecordPOP);
    remove.setEnabled(grid.Row() >= 1);
    remove.setText(grid.Row() >= 1 ? QObject::tr("Re&move Record %1").arg(grid.RowData(grid.Row()))
                                   : QObject::tr("Re&move Record"));
}

void GridPopups::prepareFieldItems(int pane, int column) {
    Grid &grid = m_editor.Tabella(pane);
    if (grid.Col() != column)
        grid.setCol(column);
    const EditorControls &controls = m_editor.controls();
    controls.action(Command::ResizeTextFieldPOP).setEnabled(isTextField(pane, column));
    controls.action(Command::RemoveFieldPOP).setEnabled(grid.Cols() >= 3);
    controls.action(Command::CloneTableSizeFPOP).setVisible(sizeCanBeCloned(m_editor, pane));
    controls.action(Command::CloneSelectedAreaFPOP).setVisible(areaCanBeCloned(m_editor));
}

bool GridPopups::isTextField(int pane, int column) {
    const int field = m_editor.Tabella(pane).ColData(column);
    if (field < 1)
        return false;
    m_editor.pane(pane).makeShownTableCurrent();
    return m_editor.OggettoDtb(pane).QIRTableFieldType(field).toInt() == static_cast<int>(FieldType::Text);
}

} // namespace qir
