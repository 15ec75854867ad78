#include "pane/GridCommands.h"

#include "db/FieldTypes.h"
#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"

#include <QAction>

namespace qir {

GridCommands::Place GridCommands::placeNow(const EditorContext &editor) {
    Place place;
    place.pane = editor.IndexAttivo();
    if (place.pane < 0)
        return place;
    const Pane &pane = editor.pane(place.pane);
    if (!pane.DtbAperto() || !pane.realTableSelected())
        return place;
    place.table = pane.selectedTableName();
    const Grid &grid = editor.Tabella(place.pane);
    if (grid.Col() < grid.Cols() && pane.TabellaMostrata() == place.table)
        place.field = grid.ColData(grid.Col());
    return place;
}

void GridCommands::enable(EditorContext &editor) {
    const Place place = placeNow(editor);
    const EditorControls &controls = editor.controls();
    bool textField = false;
    m_place = place; // also when the component fails: it is not asked at every command from then on
    controls.action(Command::ResizeTextField).setEnabled(false);
    if (!place.table.isEmpty()) {
        const Grid &grid = editor.Tabella(place.pane);
        controls.action(Command::RemoveFieldMenu).setEnabled(grid.Cols() >= 3);
        controls.action(Command::RemoveRecordMenu).setEnabled(grid.Rows() >= 2);
        if (place.field >= 1) {
            editor.pane(place.pane).makeShownTableCurrent();
            textField = editor.OggettoDtb(place.pane).QIRTableFieldType(place.field).toInt() ==
                        static_cast<int>(FieldType::Text);
        }
    }
    controls.action(Command::ResizeTextField).setEnabled(textField);
}

void GridCommands::follow(EditorContext &editor) {
    if (editor.IndexAttivo() >= 0 && m_place != placeNow(editor))
        enable(editor);
}

} // namespace qir
