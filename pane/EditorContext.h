#pragma once

#include "base/BitMatrix.h"
#include "db/QirDatabase.h"
#include "pane/Commands.h"

#include <QString>

#include <array>

QT_BEGIN_NAMESPACE
class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QWidget;
QT_END_NAMESPACE

namespace qir {

class CellColours;
class CellTexts;
class Grid;
class ListBox;

/// The state of both panes and of the window, shared by the procedures. Pane 0 is left, pane 1 is right.
struct EditorState {
    std::array<QirDatabase, 2> OggettoDtb;        ///< Empty when the pane has no component; the only owner.
    std::array<QString, 2> NomeFileDtb;           ///< Set by open and Save As, never cleared by Close.
    std::array<bool, 2> DtbAperto{false, false};  ///< The pane holds a loaded database.
    std::array<int, 2> UltimoListIndex{{-1, -1}}; ///< List line last loaded, -1 none.
    int IndexAttivo = -1;                         ///< Active pane, -1 none.
    int RigaEdit = -1;                            ///< Cell under edit (grid row and column), -1 none.
    int ColonnaEdit = -1;
    int ColonnaOrdinamento = 1; ///< Sort column, 1 after each load.
    int IndexOrigine = 0;       ///< Pane whose pop-up was opened, and the other one.
    int IndexDestinazione = 1;
    bool CaricamentoInCorso = false; ///< An open is running; list clicks are ignored.
    BitMatrix CelleDiverse;          ///< (grid row, grid column): True where the two grids differ.

    /// A grid shows another table, or none any more, since cells were compared last.
    bool ComparisonDue = false;

    /// Lists are being refilled and aligned: their clicks are not handled and the active pane stays. A depth.
    int RefillInCorso = 0;
    /// The pane, table and field that field and record commands are enabled for; no pane: not known, a grid was filled.
    struct GridCommandsPlace {
        int pane = -1;
        QString table;
        int field = 0;
        friend bool operator==(const GridCommandsPlace &, const GridCommandsPlace &) = default;
    } GridCommands;
    std::array<bool, 2> LoadFailed{false, false}; ///< The last load of a selected line broke off: it counts as none.
    /// Writing the texts that the grid shows once more may store others than were stored when they were typed: the
    /// component did not take one, or a text field was resized since.
    std::array<bool, 2> TextsUnstored{false, false};
    /// Name of the table that each grid shows, and of the one that is current in each component; "" none.
    std::array<QString, 2> TabellaMostrata;
    std::array<QString, 2> TabellaCorrente;
    /// Name of the table that each grid showed last, whether it still does or not; "" none, or it is gone.
    std::array<QString, 2> UltimaTabella;
};

struct PaneControls {
    QGroupBox *IDtb = nullptr;
    QLabel *nomelab = nullptr;
    ListBox *ListaTabelle = nullptr;
    Grid *Tabella = nullptr;
    QLineEdit *txtEdit = nullptr;
    QWidget *ground = nullptr; ///< Under list and grid, in the window's own colour; hidden while the pane is empty.
    QLabel *hint = nullptr;    ///< How to open a database, shown while the pane has none.
};

/// The window's controls, built by the main window, which owns them through Qt's parents.
struct EditorControls {
    QWidget *window = nullptr;
    std::array<PaneControls, 2> pane;
    QProgressBar *ProgressBarCompare = nullptr;
    QLabel *AutoSizeLabelTwips = nullptr; ///< Hidden; its font is what columns are measured in.
    ListBox *ProSort = nullptr;           ///< Hidden; a sorted list box that serves as a sorter.
    QMenu *ModeMenu = nullptr;
    QMenu *TablesMenu = nullptr;
    QMenu *FieldsMenu = nullptr;
    QMenu *RecordMenu = nullptr;
    QMenu *popmenuCopyToOther = nullptr;
    QMenu *popmenuGrid = nullptr;
    QMenu *popmenuGridFields = nullptr;
    QMenu *popmenuCP = nullptr;
    std::array<QAction *, commandCount> actions{};

    QAction &action(Command command) const { return *actions[static_cast<std::size_t>(command)]; }
};

/// What every procedure works on, handed to it by reference.
struct EditorContext {
    EditorState state;
    EditorControls controls;

    Grid &Tabella(int pane) const { return *controls.pane[static_cast<std::size_t>(pane)].Tabella; }
    ListBox &ListaTabelle(int pane) const { return *controls.pane[static_cast<std::size_t>(pane)].ListaTabelle; }
    QLabel &nomelab(int pane) const { return *controls.pane[static_cast<std::size_t>(pane)].nomelab; }
    QGroupBox &IDtb(int pane) const { return *controls.pane[static_cast<std::size_t>(pane)].IDtb; }
    QLineEdit &txtEdit(int pane) const { return *controls.pane[static_cast<std::size_t>(pane)].txtEdit; }

    QirDatabase &OggettoDtb(int pane) { return state.OggettoDtb[static_cast<std::size_t>(pane)]; }
    QString &NomeFileDtb(int pane) { return state.NomeFileDtb[static_cast<std::size_t>(pane)]; }
    bool &DtbAperto(int pane) { return state.DtbAperto[static_cast<std::size_t>(pane)]; }
    bool DtbAperto(int pane) const { return state.DtbAperto[static_cast<std::size_t>(pane)]; }
    int &UltimoListIndex(int pane) { return state.UltimoListIndex[static_cast<std::size_t>(pane)]; }
    bool &LoadFailed(int pane) { return state.LoadFailed[static_cast<std::size_t>(pane)]; }
    bool &TextsUnstored(int pane) { return state.TextsUnstored[static_cast<std::size_t>(pane)]; }
    QString &TabellaMostrata(int pane) { return state.TabellaMostrata[static_cast<std::size_t>(pane)]; }
    QString &TabellaCorrente(int pane) { return state.TabellaCorrente[static_cast<std::size_t>(pane)]; }
    QString &UltimaTabella(int pane) { return state.UltimaTabella[static_cast<std::size_t>(pane)]; }

    /// The texts and the colours of the table shown in a pane. The grid keeps them; these are the same objects.
    const CellTexts &TestiCelle(int pane) const;
    const CellColours &ColoriCelle(int pane) const;

    bool twoPanes() const; ///< Two-pane mode: the check mark of TwoMenu.
};

} // namespace qir
