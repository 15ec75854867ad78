#pragma once

namespace qir {

/// Every menu and pop-up command. The names are the object names of the actions, which test drivers and
/// accessibility tools rely on.
#define QIR_COMMANDS(X)                                                                                                \
    X(OpenDatabase)                                                                                                    \
    X(SaveMenu)                                                                                                        \
    X(SaveAsMenu)                                                                                                      \
    X(CloseDatabaseMenu)                                                                                               \
    X(ChangePassword)                                                                                                  \
    X(EndMenu)                                                                                                         \
    X(OneMenu)                                                                                                         \
    X(TwoMenu)                                                                                                         \
    X(CompareAgainMenu)                                                                                                \
    X(OtherPaneMenu)                                                                                                   \
    X(AddTableMenu)                                                                                                    \
    X(RenameTableMenu)                                                                                                 \
    X(RemoveTableMenu)                                                                                                 \
    X(AddFieldMenu)                                                                                                    \
    X(RenameFieldMenu)                                                                                                 \
    X(RemoveFieldMenu)                                                                                                 \
    X(ResizeTextField)                                                                                                 \
    X(ColumnSizeAdjust)                                                                                                \
    X(AddRecordMenu)                                                                                                   \
    X(RemoveRecordMenu)                                                                                                \
    X(HelpKeysMenu)                                                                                                    \
    X(AboutMenu)                                                                                                       \
    X(ClonePOP)                                                                                                        \
    X(RenameTablePOP)                                                                                                  \
    X(RemoveTablePOP)                                                                                                  \
    X(CloneTableSizePOP)                                                                                               \
    X(CloneSelectedAreaPOP)                                                                                            \
    X(RemoveRecordPOP)                                                                                                 \
    X(SortFPOP)                                                                                                        \
    X(RenameFieldPOP)                                                                                                  \
    X(RemoveFieldPOP)                                                                                                  \
    X(ResizeTextFieldPOP)                                                                                              \
    X(CloneTableSizeFPOP)                                                                                              \
    X(CloneSelectedAreaFPOP)                                                                                           \
    X(CopyMenu)                                                                                                        \
    X(PasteMenu)

enum class Command {
#define QIR_COMMAND_ENUMERATOR(name) name,
    QIR_COMMANDS(QIR_COMMAND_ENUMERATOR)
#undef QIR_COMMAND_ENUMERATOR
        Count
};

inline constexpr int commandCount = static_cast<int>(Command::Count);

/// The object name of a command's action.
const char *commandName(Command command);

} // namespace qir
