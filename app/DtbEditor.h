#pragma once

#include "app/CloseCommands.h"
#include "app/ModeCommands.h"
#include "app/Notices.h"
#include "app/OpenCommand.h"
#include "app/SaveCommands.h"
#include "app/conflicts/ConflictCommands.h"
#include "app/desktop/FileSigns.h"
#include "app/desktop/FilesAtHand.h"
#include "app/desktop/OutsideChanges.h"
#include "app/desktop/StatusState.h"
#include "app/history/KeptVersions.h"
#include "app/history/UndoCommands.h"
#include "app/look/Colours.h"
#include "app/look/Room.h"
#include "app/look/ToolBar.h"
#include "base/state/Remembered.h"
#include "compare/CellDifferences.h"
#include "compare/DifferenceStrip.h"
#include "compare/DifferenceWalk.h"
#include "compare/DifferenceWords.h"
#include "compare/DifferencesSummary.h"
#include "compare/DifferingTables.h"
#include "compare/EqualTables.h"
#include "compare/OnlyDifferences.h"
#include "compare/TableListAlignment.h"
#include "compare/TableMarks.h"
#include "compare/keyed/KeyedCommands.h"
#include "find/CellTextCommand.h"
#include "find/FindCommands.h"
#include "find/GoToCommand.h"
#include "find/PasteAll.h"
#include "find/TableFilter.h"
#include "pane/EditorContext.h"
#include "pane/GridCommands.h"
#include "pane/PaneFocus.h"
#include "pane/StoredMarks.h"
#include "platform/grid/GridPair.h"
#include "structure/CarryCommands.h"
#include "structure/CloneCommands.h"
#include "structure/FieldCommands.h"
#include "structure/KeyedCarry.h"
#include "structure/RecordCommands.h"
#include "structure/TableCommands.h"
#include "view/AreaClipboard.h"
#include "view/CellEditor.h"
#include "view/EditCommands.h"
#include "view/GridEvents.h"
#include "view/GridPopups.h"
#include "view/GridSave.h"
#include "view/Sorting.h"
#include "view/TableListPopup.h"
#include "view/TableLoader.h"

#include <QMainWindow>

#include <optional>

QT_BEGIN_NAMESPACE
class QSessionManager;
QT_END_NAMESPACE

namespace qir {

/// The main window: builds controls and menus, and connects their events to the procedures. Everything that a command
/// does stands with its subject.
class DtbEditor : public QMainWindow {
    Q_OBJECT

public:
    DtbEditor();
    ~DtbEditor() override;

    /// The start: opens what the command line names. To be called once, when the event loop runs and the window shows.
    StartResult Form_Load(const QString &commandLine);
    /// After that: opens one more file that the command line names in the right pane.
    StartResult openLeft(const QString &fileName) { return m_open.openLeft(fileName); }
    StartResult openRight(const QString &fileName);
    /// Shows two panes and asks for a file for each that has none, until one is not given; the left pane is active
    /// then.
    void askForBoth();

    /// State and controls, for tests that check that panes, lists and component are in step.
    EditorContext &context() { return m_editor; }
    const Remembered &remembered() const { return m_remembered; }
    int ColonnaOrdinamento() const { return m_tables.ColonnaOrdinamento(); }
    /// What the last paste has to tell; "" nothing.
    QString pasteOutcome() const { return m_clipboard.outcome(); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Resize();
    void EndMenu_Click();
    void connectPane(int pane);
    /// Controls, commands and menus, and what stands around the panes and follows them.
    void buildParts();
    /// What is put right at the end of each command, in this order.
    void settleWithLoop();
    void addCommands();
    /// What shows the state of panes and differences follows it.
    void commandEnded();
    void showTwoPanes();
    /// What stands above the panes, or its height, is another.
    void layOutAnew();
    /// What the window of differences by key asks of the rest.
    KeyedActions keyedActions();
    /// What the bars of outside changes, the files at hand and the kept versions do with files.
    ChangeActions changeActions();
    FileOpening fileOpening();
    KeptVersions::Opening keptOpening();
    void openBeside(int pane, const QString &path);
    /// The desktop session is about to end: closes the window through the same question as a person would.
    void endWithSession(QSessionManager &manager);

    Notices m_notices;
    Remembered m_remembered;
    EditorContext m_editor;
    GridCommands m_gridCommands;
    PaneFocus m_focus;
    EqualTables m_equalTables;
    TableMarks m_marks;
    TableListAlignment m_alignment;
    CellDifferences m_differences;
    DifferingTables m_differingTables;
    StatusState m_status;
    DifferenceWords m_differenceWords;
    DifferenceWalk m_walk;
    DifferenceStrips m_strips;
    DifferencesSummary m_summary;
    OnlyDifferences m_onlyDifferences;
    TableLoader m_tables;
    GridSave m_gridSave;
    StoredMarks m_stored;
    CellEditor m_cellEditor;
    AreaClipboard m_clipboard;
    EditCommands m_edits;
    PasteAll m_pasteAll;
    GoToCommand m_goTo;
    CellTextCommand m_cellText;
    TableFilter m_tableFilter;
    Sorting m_sorting;
    GridPopups m_gridPopups;
    GridEvents m_gridEvents;
    std::optional<FindCommands> m_find; // once the controls stand
    std::optional<GridPair> m_gridPair; // once the grids stand
    OutsideChanges m_changes;
    FileSigns m_signs;
    OpenCommand m_open;
    SaveCommands m_save;
    CloseCommands m_close;
    TableListPopup m_listPopup;
    TableCommands m_tableCommands;
    FieldCommands m_fieldCommands;
    RecordCommands m_recordCommands;
    CloneCommands m_cloneCommands;
    CarryCommands m_carryCommands;
    ModeCommands m_modes;
    FilesAtHand m_filesAtHand;
    Colours m_colours;
    ToolBar m_toolBar;
    Room m_room;
    KeyedCarry m_keyedCarry;
    KeyedCommands m_keyed;
    UndoCommands m_undo;
    KeptVersions m_kept;
    ConflictCommands m_conflicts;
};

} // namespace qir
