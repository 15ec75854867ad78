#pragma once

#include "base/SecretText.h"
#include "dialogs/CustomInputBox.h"
#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

namespace qir {

class CellDifferences;
class Notices;
class OutsideChanges;
class Remembered;
class TableListAlignment;
class TableLoader;

enum class StartResult {
    NothingToOpen, ///< The window opens without a database.
    Opened,
    CannotLoad, ///< The message was shown; the program ends with exit status 1.
};

/// Puts a database into a pane: at the start from the command line, later by the open command.
class OpenCommand {
    Q_DECLARE_TR_FUNCTIONS(OpenCommand)

public:
    OpenCommand(EditorContext &editor, Remembered &remembered, TableListAlignment &alignment,
                CellDifferences &differences, TableLoader &tables, Notices &notices, OutsideChanges &changes)
        : m_editor(editor)
        , m_remembered(remembered)
        , m_alignment(alignment)
        , m_differences(differences)
        , m_tables(tables)
        , m_notices(notices)
        , m_changes(changes) {}

    /// Its rows for the menus.
    void addCommands();

    /// The initial state, and the database that the command line names, if there is such a file, in pane 0.
    StartResult Form_Load(const QString &commandLine);
    /// Asks for a file and opens it in the active pane, in pane 0 when none is active.
    void OpenDatabase_Click();
    /// Makes way for a file in a pane that has another one: asks what becomes of its changes, once it is known that the
    /// new file can be loaded, and does so. False, with the pane as it was, where nothing is to happen or the new file
    /// cannot be loaded, which is told.
    bool makeWay(int pane, const QString &path);
    /// Opens a file in a pane as if it had been chosen in the dialog. One that is not there is told of. False where it
    /// did not come to that.
    bool openFile(int pane, const QString &path);
    /// The initial state, and a file in pane 0 whose name is taken as it is. An empty file, or the null device, stands
    /// for no database: the pane stays empty and says so.
    StartResult openLeft(const QString &name);
    /// The same beside the first one, in pane 1; the left pane is the active one then, where it holds a database.
    StartResult openRight(const QString &name);
    /// Loads a pane's file again and comes back to the table and the cell that it shows; asks first where that drops
    /// changes. What cannot be loaded now leaves the pane as it is, as far as that can be told beforehand. False then.
    bool reload(int pane, const QString &name);
    /// The open-file dialog; the chosen name, trimmed and in upper case, and whether one was chosen.
    void CaricaSecco(QString &fileName, bool &chosen);

private:
    using Choice = std::function<void(QString &fileName, bool &chosen)>;

    /// Opens what is chosen in the active pane, in pane 0 when none is active.
    StartResult openChosen(const Choice &choose);
    /// Whether a file is there to be opened; tells where it is not.
    bool isThere(const QString &path);
    /// Whether the component reaches the file chosen under a name; tells why not.
    bool isReached(const QString &name);
    /// Whether a file can be loaded now, its password asked for and kept for the load; tells why not.
    bool isLoadable(const QString &name, std::optional<InputBoxWipe> &wipe);
    /// `mistyped` is offered, selected, to be mended. From the question on what is freed is wiped.
    SecretText askPassword(std::optional<InputBoxWipe> &wipe, const QirDatabase &database, const QString &name,
                           const SecretText &mistyped);
    /// The pane holds what is on disk, under its name.
    void opened(int pane);
    /// A new component into a pane, whose notices will be shown and which knows the place of the pane's file.
    void createComponent(int pane);
    /// Loads NomeFileDtb of a pane into a new component of that pane, asking for the password of a protected file.
    bool loadComponent(int pane);
    bool loadFreshComponent(int pane);
    /// After an error on the way: the pane holds nothing any more.
    void giveUp(int pane);
    /// Why the last load of a pane failed, in the component's words.
    QString loadFailure(int pane) const;
    void showLoadFailure(int pane);
    void tellNothing(int pane, const QString &name);
    void showOpenedTables();

    EditorContext &m_editor;
    Remembered &m_remembered;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    Notices &m_notices;
    OutsideChanges &m_changes;
    std::optional<SecretText> m_tried; // the password that a reload has found to be right
};

} // namespace qir
