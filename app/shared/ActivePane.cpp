#include "app/shared/ActivePane.h"

#include "app/shared/PaneTable.h"
#include "db/FieldTypes.h"
#include "platform/controls/Grid.h"
#include "platform/controls/ListBox.h"

#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPalette>

#include <initializer_list>

namespace qir {

namespace {

constexpr QRgb activeColour = qRgb(255, 255, 0);

void colour(QWidget &widget, bool active) {
    QPalette palette = QApplication::palette(&widget);
    // Black on yellow reads well in every colour scheme; the button face has a text colour of its own.
    palette.setColor(QPalette::Window, active ? QColor(activeColour) : palette.color(QPalette::Button));
    palette.setColor(QPalette::WindowText, active ? QColor(Qt::black) : palette.color(QPalette::ButtonText));
    widget.setPalette(palette);
}

/// Gives a control inside the frame the scheme's own colours: it would take over the frame's for its lines and headers.
void keepOwnColours(QWidget &widget) {
    QPalette palette = QApplication::palette(&widget);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::WindowText})
        palette.setColor(role, palette.color(role)); // set, though to what it is: only unset roles are inherited
    widget.setPalette(palette);
}

} // namespace

void SettaColoriIndexAttivo(EditorContext &editor) {
    for (const int pane : {0, 1}) {
        if (pane == 1 && editor.state.IndexAttivo >= 0 && !editor.twoPanes())
            continue;
        const bool active = pane == editor.state.IndexAttivo;
        colour(editor.IDtb(pane), active);
        colour(editor.nomelab(pane), active);
        const PaneControls &controls = editor.controls.pane[static_cast<std::size_t>(pane)];
        for (QWidget *inside :
             std::initializer_list<QWidget *>{controls.ListaTabelle, controls.Tabella, controls.ground})
            keepOwnColours(*inside);
    }
}

void AbilitaMenu(EditorContext &editor, int pane) {
    const bool on = pane >= 0 && editor.DtbAperto(pane);
    const EditorControls &controls = editor.controls;
    for (const Command command : {Command::ChangePassword, Command::ColumnSizeAdjust, Command::CloseDatabaseMenu,
                                  Command::SaveMenu, Command::SaveAsMenu, Command::CopyMenu, Command::PasteMenu})
        controls.action(command).setEnabled(on);
    controls.action(Command::CompareAgainMenu).setEnabled(editor.DtbAperto(0) && editor.DtbAperto(1));
    controls.action(Command::OtherPaneMenu).setEnabled(editor.twoPanes());
    for (QMenu *menu : {controls.TablesMenu, controls.FieldsMenu, controls.RecordMenu})
        menu->setEnabled(on);
    if (pane < 0)
        return;
    editor.ListaTabelle(pane).setVisibleFlag(on);
    editor.nomelab(pane).setVisible(on);
    const PaneControls &inside = controls.pane[static_cast<std::size_t>(pane)];
    inside.ground->setVisible(on);
    inside.hint->setVisible(!on);
    // An empty table stays hidden: only its load shows or hides it.
    showGrid(editor, pane, on && realTableSelected(editor, pane) && editor.Tabella(pane).Rows() > 1);
}

namespace {

/// Where the field and record commands would work now; no table where there is none to work on.
EditorState::GridCommandsPlace gridCommandsPlace(EditorContext &editor) {
    EditorState::GridCommandsPlace place;
    place.pane = editor.state.IndexAttivo;
    if (place.pane < 0 || !editor.DtbAperto(place.pane) || !realTableSelected(editor, place.pane))
        return place;
    place.table = selectedTableName(editor, place.pane);
    const Grid &grid = editor.Tabella(place.pane);
    if (grid.Col() < grid.Cols() && editor.TabellaMostrata(place.pane) == place.table)
        place.field = grid.ColData(grid.Col());
    return place;
}

} // namespace

void enableGridCommands(EditorContext &editor) {
    const EditorState::GridCommandsPlace place = gridCommandsPlace(editor);
    const EditorControls &controls = editor.controls;
    bool textField = false;
    editor.state.GridCommands = place; // also when the component fails: it is not asked at every command from then on
    controls.action(Command::ResizeTextField).setEnabled(false);
    if (!place.table.isEmpty()) {
        const Grid &grid = editor.Tabella(place.pane);
        controls.action(Command::RemoveFieldMenu).setEnabled(grid.Cols() >= 3);
        controls.action(Command::RemoveRecordMenu).setEnabled(grid.Rows() >= 2);
        if (place.field >= 1) {
            makeShownTableCurrent(editor, place.pane);
            textField = editor.OggettoDtb(place.pane).QIRTableFieldType(place.field).toInt() ==
                        static_cast<int>(FieldType::Text);
        }
    }
    controls.action(Command::ResizeTextField).setEnabled(textField);
}

void followGridCommands(EditorContext &editor) {
    if (editor.state.IndexAttivo >= 0 && editor.state.GridCommands != gridCommandsPlace(editor))
        enableGridCommands(editor);
}

void showFileName(EditorContext &editor, int pane, const QString &name) {
    editor.nomelab(pane).setText(name);
    editor.nomelab(pane).setAccessibleDescription(name);
}

void activatePane(EditorContext &editor, int pane) {
    editor.state.IndexAttivo = pane;
    SettaColoriIndexAttivo(editor);
    AbilitaMenu(editor, pane);
}

ActivePaneScope::~ActivePaneScope() {
    if (m_editor.state.IndexAttivo != m_pane)
        activatePane(m_editor, m_pane);
}

} // namespace qir
