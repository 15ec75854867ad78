#include "pane/ActivePane.h"

#include "db/FieldTypes.h"

#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

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
        if (pane == 1 && editor.IndexAttivo() >= 0 && !editor.twoPanes())
            continue;
        const bool active = pane == editor.IndexAttivo();
        colour(editor.IDtb(pane), active);
        colour(editor.nomelab(pane), active);
        const PaneControls &controls = editor.pane(pane).controls();
        for (QWidget *inside :
             std::initializer_list<QWidget *>{controls.ListaTabelle, controls.Tabella, controls.ground})
            keepOwnColours(*inside);
    }
}

void AbilitaMenu(EditorContext &editor, int pane) {
    const bool on = pane >= 0 && editor.DtbAperto(pane);
    const EditorControls &controls = editor.controls();
    controls.commands.enable(editor, on);
    for (const Menu menu : {Menu::TablesMenu, Menu::FieldsMenu, Menu::RecordMenu})
        controls.menu(menu).setEnabled(on);
    if (pane < 0)
        return;
    editor.pane(pane).showWhetherOpen();
}

void activatePane(EditorContext &editor, int pane) {
    if (pane == editor.IndexAttivo())
        return;
    editor.setIndexAttivo(pane);
    SettaColoriIndexAttivo(editor);
    AbilitaMenu(editor, pane);
}

ActivePaneScope::~ActivePaneScope() {
    activatePane(m_editor, m_pane);
}

} // namespace qir
