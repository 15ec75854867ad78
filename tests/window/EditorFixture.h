#pragma once

#include "app/DtbEditor.h"
#include "db/FieldTypes.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "tests/window/DialogScript.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace qir::test {

/// One field of a table to make: its name, type and size, and its texts, one for each record.
struct FieldOfTexts {
    QString name;
    FieldType type;
    QStringList texts;
    double size = 50;
};

struct TableOfTexts {
    QString name;
    std::vector<FieldOfTexts> fields;
};

/// Writes a database file through the component, as any program would. Throws what the component throws.
void makeDatabase(const QString &path, const std::vector<TableOfTexts> &tables, const QString &password = {});

/// Grid row and column of the cell under edit; -1 none.
struct EditedCell {
    int row;
    int column;
};

/// The real main window with its message loop, shown, and the dialogs that a test expects. One at a time.
class EditorFixture {
public:
    /// Starts the editor with a command line, as main() does.
    explicit EditorFixture(const QString &commandLine = {});
    /// Fails the test function with what problems() says at the end.
    ~EditorFixture();

    DtbEditor &window() { return *m_window; }
    EditorContext &editor() { return m_window->context(); }
    DialogScript &dialogs() { return m_dialogs; }
    StartResult startResult() const { return m_startResult; }

    // What the panes hold and show.

    int activePane() { return editor().IndexAttivo(); } ///< -1 none.
    const QirDatabase &database(int pane) { return editor().OggettoDtb(pane); }
    bool isOpen(int pane) { return editor().DtbAperto(pane); }
    QString fileName(int pane) { return editor().NomeFileDtb(pane); }
    int loadedLine(int pane) { return editor().UltimoListIndex(pane); } ///< Of the table list, -1 none.
    QString shownTable(int pane) { return editor().pane(pane).TabellaMostrata(); }
    EditedCell editedCell() { return {editor().RigaEdit(), editor().ColonnaEdit()}; }

    /// A pane's database, the table that its grid shows being current.
    const QirDatabase &atShownTable(int pane) {
        editor().pane(pane).makeShownTableCurrent();
        return database(pane);
    }

    ListBox &list(int pane) { return editor().ListaTabelle(pane); }
    Grid &grid(int pane) { return editor().Tabella(pane); }
    QLineEdit &cellEditor(int pane) { return editor().txtEdit(pane); }
    QGroupBox &frame(int pane) { return editor().IDtb(pane); }
    QLabel &label(int pane) { return editor().nomelab(pane); }
    QProgressBar &progressBar() { return *editor().controls().ProgressBarCompare; }
    QMenu &menu(Menu menu) { return editor().controls().menu(menu); }
    QAction &action(Command command) { return editor().controls().action(command); }
    /// Chooses a command as its menu or its shortcut would; fails (with a problem) when it is disabled.
    void choose(Command command);
    /// Opens a file by the open command into the active pane.
    void open(const QString &path);
    /// Clicks the caption of a pane's frame.
    void activate(int pane);
    /// Two-pane mode with these files, the left pane active.
    void openBoth(const QString &left, const QString &right);
    /// The middle of a line in the list's viewport, after bringing it into view.
    QPoint lineCentre(int pane, int line);
    /// The middle of a record cell in the grid's viewport, after bringing it into view.
    QPoint cellCentre(int pane, int row, int column);
    /// Clicks a line of a pane's table list with the left button.
    void clickLine(int pane, int line);
    /// Clicks a record cell with the left button.
    void clickCell(int pane, int row, int column);
    QStringList lines(int pane);
    /// The record texts of a grid, row by row.
    QList<QStringList> texts(int pane);

    /// Destroys the window as the end of the program does.
    void end();

    /// What is out of step between lists, grids and components, and what went wrong with dialogs; "" when all is well.
    QString problems();

private:
    DialogScript m_dialogs;
    MessageLoop m_loop;
    std::unique_ptr<DtbEditor> m_window;
    StartResult m_startResult = StartResult::NothingToOpen;
    QStringList m_problems;
};

/// What the invariant of panes, lists and components says of a window: for each open pane the selected real line, the
/// table in the grid and the component's current table are the same; a placeholder, no selection or an empty table
/// hides the grid; every real line carries the number of the table that it names. "" when it holds.
QString invariantProblems(EditorContext &editor);

/// Fails the test function with what problems() says, where a test goes on; a fixture looks by itself at its end.
#define QIR_VERIFY_OK(fixture) QCOMPARE((fixture).problems(), QString())

} // namespace qir::test
