#pragma once

namespace qir {

/// Every menu and pop-up with its commands, in the order in which it shows them; LINE stands between groups. A
/// command's name is the object name of its action, which test drivers and accessibility tools rely on.
///
/// To add a command: a line here, and a row in the class that has its procedure (CommandTable).
// clang-format off
#define QIR_COMMANDS(MENU, COMMAND, LINE)                   \
    MENU(FileMenu)                                          \
        COMMAND(NewDatabase)                                \
        COMMAND(OpenDatabase)                               \
        COMMAND(SaveMenu)                                   \
        COMMAND(SaveAsMenu)                                 \
        COMMAND(RevertMenu)                                 \
        COMMAND(CloseDatabaseMenu)                          \
        COMMAND(ReportMenu)                                 \
        COMMAND(ConflictsMenu)                              \
        LINE                                                \
        COMMAND(ChangePassword)                             \
        LINE                                                \
        COMMAND(ForgetMenu)                                 \
        LINE                                                \
        COMMAND(EndMenu)                                    \
    MENU(EditMenu)                                          \
        COMMAND(UndoMenu)                                   \
        COMMAND(RedoMenu)                                   \
        LINE                                                \
        COMMAND(HistoryMenu)                                \
        LINE                                                \
        COMMAND(CopyWithHeadersMenu)                        \
        COMMAND(PasteAllMenu)                               \
        LINE                                                \
        COMMAND(DeleteCellsMenu)                            \
        COMMAND(FillDownMenu)                               \
        LINE                                                \
        COMMAND(SelectAllMenu)                              \
        LINE                                                \
        COMMAND(FindMenu)                                   \
        COMMAND(FindNextMenu)                               \
        COMMAND(FindPreviousMenu)                           \
        COMMAND(ReplaceMenu)                                \
        COMMAND(GoToMenu)                                   \
    MENU(ModeMenu)                                          \
        COMMAND(OneMenu)                                    \
        COMMAND(TwoMenu)                                    \
        LINE                                                \
        COMMAND(CompareAgainMenu)                           \
        COMMAND(DifferencesByKeyMenu)                       \
        LINE                                                \
        COMMAND(NextDifferenceMenu)                         \
        COMMAND(PreviousDifferenceMenu)                     \
        COMMAND(FirstDifferenceMenu)                        \
        COMMAND(LastDifferenceMenu)                         \
        COMMAND(NextDifferingCellMenu)                      \
        COMMAND(PreviousDifferingCellMenu)                  \
        LINE                                                \
        COMMAND(OnlyDifferencesMenu)                        \
        COMMAND(DifferencesSummaryMenu)                     \
        LINE                                                \
        COMMAND(CarryCellsMenu)                             \
        COMMAND(CarryRecordMenu)                            \
        COMMAND(CarryTableMenu)                             \
    MENU(ViewMenu)                                          \
        COMMAND(ColumnSizeAdjust)                           \
        COMMAND(OtherPaneMenu)                              \
        LINE                                                \
        COMMAND(ToolBarMenu)                                \
        COMMAND(StretchColumnMenu)                          \
        COMMAND(ListBesideMenu)                             \
        COMMAND(DesktopDialogsMenu)                         \
    MENU(ColoursMenu)                                       \
        COMMAND(ColoursSystemMenu)                          \
        COMMAND(ColoursLightMenu)                           \
        COMMAND(ColoursDarkMenu)                            \
    MENU(TablesMenu)                                        \
        COMMAND(AddTableMenu)                               \
        COMMAND(RenameTableMenu)                            \
        COMMAND(RemoveTableMenu)                            \
    MENU(FieldsMenu)                                        \
        COMMAND(AddFieldMenu)                               \
        COMMAND(RenameFieldMenu)                            \
        COMMAND(RemoveFieldMenu)                            \
        COMMAND(ResizeTextField)                            \
    MENU(RecordMenu)                                        \
        COMMAND(AddRecordMenu)                              \
        COMMAND(RemoveRecordMenu)                           \
    MENU(HelpMenu)                                          \
        COMMAND(GuideMenu)                                  \
        COMMAND(HelpKeysMenu)                               \
        COMMAND(KeptVersionsMenu)                           \
        COMMAND(AboutMenu)                                  \
    MENU(popmenuCopyToOther)                                \
        COMMAND(ClonePOP)                                   \
        COMMAND(RenameTablePOP)                             \
        COMMAND(RemoveTablePOP)                             \
    MENU(popmenuGrid)                                       \
        COMMAND(CloneTableSizePOP)                          \
        COMMAND(CloneSelectedAreaPOP)                       \
        COMMAND(RemoveRecordPOP)                            \
    MENU(popmenuGridFields)                                 \
        COMMAND(SortFPOP)                                   \
        LINE                                                \
        COMMAND(RenameFieldPOP)                             \
        COMMAND(RemoveFieldPOP)                             \
        COMMAND(ResizeTextFieldPOP)                         \
        LINE                                                \
        COMMAND(CloneTableSizeFPOP)                         \
        COMMAND(CloneSelectedAreaFPOP)                      \
    MENU(popmenuCP)                                         \
        COMMAND(CopyMenu)                                   \
        COMMAND(PasteMenu)
// clang-format on

#define QIR_NOTHING_OF(name)
#define QIR_ENUMERATOR(name) name,

enum class Command { QIR_COMMANDS(QIR_NOTHING_OF, QIR_ENUMERATOR, ) Count };
/// The menus of the bar, then the pop-ups.
enum class Menu { QIR_COMMANDS(QIR_ENUMERATOR, QIR_NOTHING_OF, ) Count };

#undef QIR_ENUMERATOR
#undef QIR_NOTHING_OF

inline constexpr int commandCount = static_cast<int>(Command::Count);
inline constexpr int menuCount = static_cast<int>(Menu::Count);

/// The object name of a command's action, and of a menu.
const char *commandName(Command command);
const char *menuName(Menu menu);

} // namespace qir
