#pragma once

#include "db/QirDatabase.h"

#include <QString>

QT_BEGIN_NAMESPACE
class QGroupBox;
class QLabel;
class QLineEdit;
class QWidget;
QT_END_NAMESPACE

namespace qir {

class CellEdit;
class Grid;
class ListBox;
class ListClicks;
class PaneSplitter;

/// The controls of a pane. The window that built them owns them.
struct PaneControls {
    QGroupBox *IDtb = nullptr;
    QLabel *nomelab = nullptr;
    QLineEdit *filter = nullptr; ///< Above a long list: what the names of its lines have to hold. Hidden else.
    ListBox *ListaTabelle = nullptr;
    PaneSplitter *splitter = nullptr; ///< Between list and grid; hidden while the pane is empty.
    Grid *Tabella = nullptr;
    QLineEdit *txtEdit = nullptr;
    QWidget *ground = nullptr; ///< Under list and grid, in the window's own colour; hidden while the pane is empty.
    QLabel *hint = nullptr;    ///< How to open a database, shown while the pane has none.
};

/// One side of the window: the only owner of its database, and all that is known of the table that it shows.
///
/// Three tables may be different ones for a while: the one of the list's selected line, the one that the grid shows and
/// the one that is current in the component. At the end of each command the first two are the same, and whoever reads
/// or writes fields or records calls makeShownTableCurrent() before.
class Pane {
public:
    Pane(CellEdit &edit, ListClicks &clicks)
        : m_edit(edit)
        , m_clicks(clicks) {}

    /// Enters the controls, once, when they are built.
    void setControls(const PaneControls &controls);
    const PaneControls &controls() const { return m_controls; }

    // The database.

    const QirDatabase &OggettoDtb() const { return m_database; }
    const QString &NomeFileDtb() const { return m_fileName; } ///< Set by open and Save As, never cleared by Close.
    bool DtbAperto() const { return m_open; }                 ///< The pane holds a loaded database.

    /// A file was chosen, to be loaded or written: NomeFileDtb() from now on, also where that then fails.
    void fileChosen(const QString &name) { m_fileName = name; }
    /// The path of the file whose name is shown: names of two files may be equal but for their case.
    const QString &filePath() const { return m_filePath; }
    /// Takes the component that is to load the pane's file, and releases the one before. The pane does not count as
    /// open, and no table is known to be current.
    void takeComponent(QirDatabase database);
    /// The component has loaded its file: the pane is open until release(). One that could not stays, to tell why.
    void componentLoaded();
    /// Releases the component alone. What is shown of it stays.
    void releaseDatabase() { m_database.release(); }
    /// Releases the component there and then (which may write the file), and with it all that was shown of it: ends an
    /// edit, empties list and grid, hides the grid. No line counts as loaded.
    void release();

    /// Shows a file name in the label, to screen readers too; the file is the one that was chosen last by this name.
    void showFileName(const QString &name);
    /// Shows list and label when the pane is open, else the hint; and the grid when a real table with records is
    /// selected.
    void showWhetherOpen();

    // The list of tables.

    /// The table name in the selected line, trimmed and without markers; "" with no selection.
    QString selectedTableName() const;
    /// True when the selected line is a real table (item data 1 or more).
    bool realTableSelected() const;
    int UltimoListIndex() const { return m_line; } ///< List line last loaded, -1 none.

    /// The selected line is about to be loaded: it counts as loaded, and no failure of it is known yet.
    void lineTaken();
    /// The selected line stands for what is shown.
    void lineSettled();
    /// The list was refilled: no line of it is loaded.
    void refilled() { m_line = -1; }

    // The table.

    const QString &TabellaMostrata() const { return m_shown; }   ///< The table that the grid shows; "" none.
    const QString &TabellaCorrente() const { return m_current; } ///< The one current in the component; "" not known.
    const QString &UltimaTabella() const { return m_last; }      ///< The table shown last; "" none, or it is gone.

    /// Makes a table current in the component and remembers that it is. A command that yields finds it as it was:
    /// whoever works outside commands waits until none runs, which debug builds hold here.
    void makeTableCurrent(const QString &name);
    /// Makes the table that the grid shows current in the component, when another one is. Throws when the selected
    /// table could not be loaded: the component may stand at another one, which nobody sees.
    void makeShownTableCurrent();
    /// The component may stand at any table, or at none.
    void currentTableLost() { m_current.clear(); }

    /// The grid is being filled with the current table. True when it showed another one, or none, before.
    bool tableLoaded();
    /// The grid shows no table any more. True when it did. The grid itself is hidden by showGrid().
    bool tableHidden();
    /// The shown table's line has its new name. The component's current table is not known then.
    void renamed();
    /// The selected table is gone.
    void tableRemoved();

    /// Loading the selected line broke off: it counts as not loaded.
    void loadBrokeOff(const QString &reason);
    void loadSucceeded() { m_loadFailed = false; }
    bool LoadFailed() const { return m_loadFailed; }
    /// Throws with the reason when the last load of the selected table broke off: what writes the grid's texts, or
    /// counts its rows, must not take a part for the whole.
    void requireWhole() const;

    /// True when storing the grid's texts once more may change what is stored: the component did not take one of them,
    /// or a text field was resized since.
    bool TextsUnstored() const { return m_textsUnstored; }
    void textsLeftUnstored() { m_textsUnstored = true; }
    /// All of them were stored once more.
    void textsStored() { m_textsUnstored = false; }

    /// Shows or hides the grid by its own flag; hiding ends an edit first and gives the grid's focus to the list.
    void showGrid(bool visible);

private:
    CellEdit &m_edit;
    ListClicks &m_clicks;
    PaneControls m_controls;
    QirDatabase m_database; // empty when the pane has no component
    QString m_fileName;
    QString m_filePath;
    bool m_open = false;
    int m_line = -1;
    QString m_shown;
    QString m_current;
    QString m_last;
    bool m_loadFailed = false;
    QString m_loadError;
    bool m_textsUnstored = false;
};

} // namespace qir
