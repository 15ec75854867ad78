#include "app/StructureConnections.h"

#include "platform/list/ListBox.h"

namespace qir {

StructureConnections::StructureConnections(EditorContext &editor, TableListAlignment &alignment,
                                           CellDifferences &differences, TableLoader &tables)
    : m_editor(editor)
    , m_listPopup(editor)
    , m_tables(editor, alignment, differences, tables)
    , m_fields(editor, differences, tables)
    , m_records(editor, differences, tables)
    , m_clones(editor, alignment, differences, tables) {}

void StructureConnections::connectPane(int pane) {
    // No command of its own, whose end would load the line that a left press has selected before its release comes to
    // load it: the procedure lets no error out and changes nothing but the pop-up.
    connect(&m_editor.ListaTabelle(pane), &ListBox::MouseDown, this,
            [this, pane](Qt::MouseButton button, const QPoint &globalPosition) {
                m_listPopup.ListaTabelle_MouseDown(pane, button, globalPosition);
            });
}

void StructureConnections::connectCommands(const std::function<void(Command, std::function<void()>)> &onCommand) {
    onCommand(Command::AddTableMenu, [this] { m_tables.AddTableMenu_Click(); });
    onCommand(Command::RenameTableMenu, [this] { m_tables.RenameTableMenu_Click(); });
    onCommand(Command::RenameTablePOP, [this] { m_tables.RenameTablePOP_Click(); });
    onCommand(Command::RemoveTableMenu, [this] { m_tables.RemoveTableMenu_Click(); });
    onCommand(Command::RemoveTablePOP, [this] { m_tables.RemoveTablePOP_Click(); });
    onCommand(Command::AddFieldMenu, [this] { m_fields.AddFieldMenu_Click(); });
    onCommand(Command::RenameFieldMenu, [this] { m_fields.RenameFieldMenu_Click(); });
    onCommand(Command::RenameFieldPOP, [this] { m_fields.RenameFieldPOP_Click(); });
    onCommand(Command::RemoveFieldMenu, [this] { m_fields.RemoveFieldMenu_Click(); });
    onCommand(Command::RemoveFieldPOP, [this] { m_fields.RemoveFieldPOP_Click(); });
    onCommand(Command::ResizeTextField, [this] { m_fields.ResizeTextField_Click(); });
    onCommand(Command::ResizeTextFieldPOP, [this] { m_fields.ResizeTextFieldPOP_Click(); });
    onCommand(Command::AddRecordMenu, [this] { m_records.AddRecordMenu_Click(); });
    onCommand(Command::RemoveRecordMenu, [this] { m_records.RemoveRecordMenu_Click(); });
    onCommand(Command::RemoveRecordPOP, [this] { m_records.RemoveRecordPOP_Click(); });
    onCommand(Command::ClonePOP, [this] { m_clones.ClonePOP_Click(); });
    onCommand(Command::CloneTableSizePOP, [this] { m_clones.CloneTableSizePOP_Click(); });
    onCommand(Command::CloneTableSizeFPOP, [this] { m_clones.CloneTableSizeFPOP_Click(); });
    onCommand(Command::CloneSelectedAreaPOP, [this] { m_clones.CloneSelectedAreaPOP_Click(); });
    onCommand(Command::CloneSelectedAreaFPOP, [this] { m_clones.CloneSelectedAreaFPOP_Click(); });
}

} // namespace qir
