#pragma once

#include "pane/EditorContext.h"
#include "structure/CloneCommands.h"
#include "structure/FieldCommands.h"
#include "structure/RecordCommands.h"
#include "structure/TableCommands.h"
#include "view/TableListPopup.h"

#include <QObject>

#include <functional>

namespace qir {

/// Holds the commands on tables, fields and records and connects them, and the pop-up of the table lists, to the
/// window.
class StructureConnections : public QObject {
public:
    StructureConnections(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                         TableLoader &tables);

    void connectPane(int pane);
    /// Hands each command with its procedure to `onCommand`.
    void connectCommands(const std::function<void(Command, std::function<void()>)> &onCommand);

private:
    EditorContext &m_editor;
    TableListPopup m_listPopup;
    TableCommands m_tables;
    FieldCommands m_fields;
    RecordCommands m_records;
    CloneCommands m_clones;
};

} // namespace qir
