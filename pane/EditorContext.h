#pragma once

#include "base/BitMatrix.h"
#include "pane/CellEdit.h"
#include "pane/CommandTable.h"
#include "pane/ListClicks.h"
#include "pane/Pane.h"
#include "pane/PaneRoom.h"
#include "pane/StatusLine.h"

#include <array>

QT_BEGIN_NAMESPACE
class QMenu;
class QProgressBar;
QT_END_NAMESPACE

namespace qir {

class CellColours;
class CellTexts;

/// The controls that both panes share, built by the main window, which owns them through Qt's parents.
struct EditorControls {
    QWidget *window = nullptr;
    QProgressBar *ProgressBarCompare = nullptr;
    QLabel *AutoSizeLabelTwips = nullptr; ///< Hidden; its font is what columns are measured in.
    ListBox *ProSort = nullptr;           ///< Hidden; a sorted list box that serves as a sorter.
    QWidget *belowFrames = nullptr;       ///< Asks for room below the frames while it is not hidden; may be missing.
    std::array<QMenu *, menuCount> menus{};
    CommandTable commands;

    QAction &action(Command command) const { return commands.action(command); }
    QMenu &menu(Menu menu) const { return *menus[static_cast<std::size_t>(menu)]; }
};

/// What every procedure works on, handed to it by reference: both panes and what concerns the two of them. Pane 0 is
/// left, pane 1 is right.
class EditorContext {
public:
    EditorContext() = default;
    EditorContext(const EditorContext &) = delete;
    EditorContext &operator=(const EditorContext &) = delete;

    Pane &pane(int number) { return m_panes[static_cast<std::size_t>(number)]; }
    const Pane &pane(int number) const { return m_panes[static_cast<std::size_t>(number)]; }

    // What stands in a pane, under its given name.

    Grid &Tabella(int number) const { return *pane(number).controls().Tabella; }
    ListBox &ListaTabelle(int number) const { return *pane(number).controls().ListaTabelle; }
    QLabel &nomelab(int number) const { return *pane(number).controls().nomelab; }
    QGroupBox &IDtb(int number) const { return *pane(number).controls().IDtb; }
    QLineEdit &txtEdit(int number) const { return *pane(number).controls().txtEdit; }
    const QirDatabase &OggettoDtb(int number) const { return pane(number).OggettoDtb(); }
    const QString &NomeFileDtb(int number) const { return pane(number).NomeFileDtb(); }
    bool DtbAperto(int number) const { return pane(number).DtbAperto(); }
    int UltimoListIndex(int number) const { return pane(number).UltimoListIndex(); }
    /// The texts and the colours of the table shown in a pane. The grid keeps them; these are the same objects.
    const CellTexts &TestiCelle(int number) const;
    const CellColours &ColoriCelle(int number) const;

    // The active pane. To change it call activatePane().

    int IndexAttivo() const { return m_active; } ///< -1 none.
    void setIndexAttivo(int number) { m_active = number; }

    // The pane that a copy comes from, set when a pop-up opens, and the one that it goes to.

    int IndexOrigine() const { return m_origin; }
    int IndexDestinazione() const { return 1 - m_origin; }
    void setOrigin(int number) { m_origin = number; }

    // The cell that is edited.

    CellEdit &cellEdit() { return m_edit; }
    int RigaEdit() const { return m_edit.row(); } ///< Grid row and column, -1 none.
    int ColonnaEdit() const { return m_edit.column(); }
    void endEdit() { m_edit.end(); }

    // Clicks of the table lists.

    ListClicks &listClicks() { return m_clicks; }
    bool CaricamentoInCorso() const { return m_clicks.opening(); }

    /// By grid row and column: True where the two grids differ. A comparison fills it, an edit updates its own cell.
    const BitMatrix &CelleDiverse() const { return m_different; }
    BitMatrix &foundDifferences() { return m_different; }

    bool twoPanes() const; ///< Two-pane mode: the check mark of TwoMenu.
    /// True when both panes hold a database and their selected lines stand for the same table, so that the cells of
    /// the two grids may be compared.
    bool panesShowSameTable() const;
    /// True when, in addition, both grids were filled with that table. A pane whose list was refilled but whose table
    /// is not loaded again yet, or whose load failed, still shows another one. An empty table counts, although its grid
    /// is hidden.
    bool gridsShowSameTable() const;

    /// The line below the panes, which also shows a message for a while.
    StatusLine &status() { return m_status; }
    /// How a pane's room is shared between list and grid.
    PaneRoom &room() { return m_room; }

    /// What both panes share. Entered when it is built.
    const EditorControls &controls() const { return m_controls; }
    void setControls(const EditorControls &controls) { m_controls = controls; }
    void setBelowFrames(QWidget &bar) { m_controls.belowFrames = &bar; }
    /// To add commands to.
    CommandTable &commands() { return m_controls.commands; }

private:
    EditorControls m_controls;
    CellEdit m_edit;
    ListClicks m_clicks;
    std::array<Pane, 2> m_panes{Pane(m_edit, m_clicks), Pane(m_edit, m_clicks)};
    int m_active = -1;
    int m_origin = 0;
    BitMatrix m_different;
    StatusLine m_status;
    PaneRoom m_room;
};

} // namespace qir
