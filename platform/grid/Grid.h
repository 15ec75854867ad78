#pragma once

#include "platform/cells/CellTexts.h"
#include "platform/cells/ShownLines.h"
#include "platform/grid/CellColours.h"
#include "platform/grid/GridSelection.h"

#include <QBasicTimer>
#include <QTableView>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace qir {

class GridDelegate;
class GridHeader;
class GridModel;
class PointerPlace;

/// Where a person is in a grid: current cell, selection, scroll position.
struct GridPlace {
    GridSelection selection;
    int topRow = 1;
    int leftColumn = 1;
};

/// How far a grid scrolls: the last row and column that can be the first ones shown.
struct GridReach {
    int row = 1;
    int column = 1;
    friend bool operator==(const GridReach &, const GridReach &) = default;
};

/// A read-only table with a fixed header row (row 0, the horizontal header) and a fixed column (column 0, the vertical
/// header, which has no texts), so record cells count from (1, 1). Widths and cell positions are in twips, the latter
/// relative to the grid.
///
/// Current cell and selection: `Row`, `Col` are the current cell, `RowSel`, `ColSel` the selection's other corner.
/// Setting Row or Col collapses the selection; a row or column that the grid does not have changes nothing. Leaving the
/// current cell, by the user or by code, raises LeaveCell before and SelChange after; a selection that changes round
/// the same current cell raises SelChange alone. Code never scrolls by moving the current cell; keys and mouse do.
///
/// Contents, colours, widths, scrolling by code and resizing raise nothing, and neither does anything done inside a
/// GridSilence.
class Grid : public QTableView {
    Q_OBJECT

public:
    explicit Grid(QWidget *parent = nullptr);
    ~Grid() override;

    // Size and contents

    int Rows() const; ///< Records + 1.
    int Cols() const; ///< Fields + 1.
    /// Cuts, or extends with empty rows (columns); at least the fixed one stays. Current cell and selection are cut
    /// silently.
    void setRows(int rows);
    void setCols(int columns);
    /// Back to one empty field column without records, everything white, current cell (0, 1). Raises nothing.
    void clear();

    /// Empty outside the grid and in the fixed column; row 0 is the header.
    QString TextMatrix(int row, int column) const;
    /// Does nothing outside the grid and in the fixed column.
    void setTextMatrix(int row, int column, const QString &text);

    /// Sets texts of record cells as `write` gives them, one after the other, with one notice for all of them.
    using SetText = std::function<void(int row, int column, QStringView text)>;
    void setTexts(const std::function<void(const SetText &set)> &write);

    int RowData(int row) const; ///< The row's own number unless another was set.
    void setRowData(int row, int number);
    int ColData(int column) const;
    void setColData(int column, int number);
    /// Every row carries its own number again; costs nothing, whatever the number of rows.
    void renumberRows();
    bool rowsAreRecords() const; ///< Every row carries its own number.

    // What of it is shown. The grid counts all its rows and columns whether they are shown or not; its view's model has
    // the shown ones alone, and the fixed column tells their numbers then. A cell that becomes current is shown from
    // then on. A new table, or another shape, is shown whole.

    bool showsAll() const;
    bool shows(int row, int column) const; ///< True also for the fixed row and column.
    /// Rows that are shown.
    int shownRowCount() const;
    /// The first row, or column, from this one on that is shown, in steps of 1 or -1; 0 where there is none.
    int nextShownRow(int row, int step = 1) const;
    int nextShownColumn(int column, int step = 1) const;
    /// Shows these rows and columns alone. A current cell that is not among them moves to the nearest that is (to the
    /// fixed row where there is none). Raises nothing.
    void showOnly(ShownLines rows, ShownLines columns);
    void showAll();
    /// Shows one cell more, at its place.
    void showCell(int row, int column);
    /// The cell in the view's model; invalid where it is not shown.
    QModelIndex cellIndex(int row, int column) const;

    /// Reorders texts, colours and RowData: afterwards row i + 1 is the one that was row order[i] + 1. `order` is a
    /// permutation of 0 .. Rows - 2. The current cell stays where it is.
    void reorderRecords(const std::vector<std::uint32_t> &order);

    /// The texts that the grid shows. Whatever writes a text goes through setTextMatrix() or setClip(), so that it is
    /// drawn.
    const CellTexts &texts() const;

    // Colours

    CellColour CellBackColor(int row, int column) const { return colours().at(row, column); }
    /// Moves nothing.
    void setCellBackColor(int row, int column, CellColour colour);
    const CellColours &colours() const;
    /// Paints every cell of `window` red where `different` (counted as the grid counts) is set, else white; one notice
    /// to the view at most, none when nothing changes.
    void paintDifferences(const BitMatrix &different, const GridRange &window);
    /// The same for all cells.
    void paintDifferences(const BitMatrix &different);

    /// What the tool tip and the accessible description of a red cell say.
    void setCellWords(std::function<QString(int row, int column)> words);
    /// Cells whose text is not what is stored of it carry a mark in their corner, and say in their tool tip what
    /// `words` gives for them. A fill of the grid takes the marks away.
    bool isUnlikeStored(int row, int column) const;
    void setUnlikeStored(int row, int column, bool unlike);
    void setStoredWords(std::function<QString(int row, int column)> words);

    // Current cell and selection

    int Row() const { return m_selection.row; }
    int Col() const { return m_selection.column; }
    int RowSel() const { return m_selection.rowEnd; }
    int ColSel() const { return m_selection.columnEnd; }
    void setRow(int row);
    void setCol(int column);
    void setRowSel(int row);
    void setColSel(int column);
    const GridSelection &selection() const { return m_selection; }
    /// All four at once: at most one LeaveCell and one SelChange. Does nothing when a corner is outside the grid.
    void setSelection(const GridSelection &selection);
    using QTableView::setSelection;

    /// The texts of the selected block: cells joined by tabs, rows by carriage returns, no separator at the end.
    QString Clip() const;
    /// Lays such a text into the selected block from its top left cell. Cells outside it stay, as do those that the
    /// text has no value for.
    void setClip(const QString &text);
    /// The same with texts that may hold separators: record r of `block` goes to the r-th selected row, its field k to
    /// the k-th selected column.
    void setClip(const CellTexts &block);
    /// Gives the cells of a range the texts that the same cells have in `texts`; does nothing outside the grid.
    void copyTexts(const CellTexts &texts, const GridRange &range);

    // Position

    int TopRow() const; ///< The first row shown in full, 1 or more.
    int LeftCol() const;
    void setTopRow(int row); ///< As far as the scroll range goes.
    void setLeftCol(int column);
    GridPlace place() const;
    /// Goes there, cut to what the grid has; raises nothing.
    void setPlace(const GridPlace &place);

    /// Copies the other grid's current cell and selection, each number only where this grid is large enough; raises
    /// nothing.
    void followSelection(const Grid &leader);
    /// Shows the same first row and column as the other grid; raises nothing.
    void followScroll(const Grid &leader);

    /// How far the grid scrolls by what it holds, and how far it is to scroll at least, if need be into empty room
    /// beyond its last row or column.
    const GridReach &reach() const { return m_reach; }
    void setLeastReach(const GridReach &least);

    /// Gives a row the height, or a column the width, that it has in the other grid. Heights stay through reloads of
    /// the same table, also for rows that are not there yet.
    void followRowHeight(const Grid &leader, int row);
    void followColumnWidth(const Grid &leader, int column);
    /// The same for every row that the other grid's user has resized.
    void followRowHeights(const Grid &leader);

    /// The header (0) or record row under the pointer, the column likewise; -1 when the pointer is over no cell of this
    /// grid. While a mouse event of the grid is handled it is that event's place.
    int MouseRow() const;
    int MouseCol() const;

    /// Scrolls as far as is needed to show the current cell. Not a user's scrolling.
    void bringCellIntoView();
    /// The visible part of the current cell in pixels, relative to the grid: cut to the area of the cells, never over a
    /// header. Empty when nothing of it shows.
    QRect cellRectangle() const;
    int CellLeft() const; ///< cellRectangle() in twips.
    int CellTop() const;
    int CellWidth() const;
    int CellHeight() const;

    // Look

    int ColWidth(int column) const;
    /// Kept to the twip and read back so; drawn rounded up to whole pixels.
    void setColWidth(int column, int twips);
    /// Draws the last column to the grid's edge where room is left beside it; its own width stays as it is.
    void setStretchLastColumn(bool stretch);
    /// Whether the user may resize rows and columns.
    void setUserResizing(bool allowed);
    bool userResizing() const { return m_userResizing; }

    /// The grid's own flag, whatever its frame or window shows.
    bool Visible() const { return m_visible; }
    void setVisibleFlag(bool visible);

    void selectAll() override; ///< All record cells, (1, 1) current.

Q_SIGNALS:
    void Click(); ///< The left button was released over cells or headers.
    void DblClick();
    /// A key with its virtual-key code (45 Insert, 67 C, 86 V, ...) and modifiers (1 Shift, 2 Ctrl, 4 Alt).
    void KeyDown(int keyCode, int shift);
    void KeyPress(int keyAscii); ///< A character typed: 13 is Enter.
    void LeaveCell();            ///< Before the current cell changes; Row and Col are still the old ones.
    void SelChange();
    void Scroll();            ///< The user scrolled by bar or wheel.
    void RowResized(int row); ///< By the user, with the mouse.
    void ColumnResized(int column);
    /// What the grid holds, or its size, may have changed, and with it reach(); or the grid was shown or hidden.
    void LaidOut();
    void TextsChanged(const GridRange &cells); ///< Cells were given other texts.
    void TextsReplaced();                      ///< They are those of another table, or more or fewer.
    void CellShown(int row, int column);       ///< A cell that was not shown is from now on.
    void Revealed();                           ///< A key or a drag scrolled to show where it went; before SelChange.
    /// A button went down over (row, column), -1 when over no cell; (0, 0) is the corner, told of the left button only.
    /// The keyboard's menu key, or Shift+F10, counts as the right button on the current cell, with Ctrl on the header
    /// above it. A right press outside the selection has made its cell current before this.
    void MouseDown(Qt::MouseButton button, int row, int column, const QPoint &globalPosition);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;

private:
    friend class GridFill;
    friend class GridHidden;
    friend class GridSilence;

    struct PointedCell {
        int row = -1;
        int column = -1;
    };

    void connectHeaders();
    void connectScrollBars();
    void adoptShape();
    void adoptShown();
    void fitFixedColumn();
    void fitRowHeight();
    int drawnWidth(int twips) const;
    void stretchLastColumn();
    void draw(int section, int pixels);
    void layOut();
    void alignHeaders();
    void drawLinesAgain();
    void setRowHeight(int row, int pixels);
    void restoreRowHeights();
    void endHidden();

    GridExtent extent() const;
    /// Counted by what the view shows: its n-th row is n, the fixed one 0.
    GridExtent extentInView() const;
    GridSelection inView(const GridSelection &selection) const;
    GridRange inView(const GridRange &range) const;
    GridSelection fromView(const GridSelection &selection) const;
    GridRange shownCells() const;
    PointedCell cellAt(const QModelIndex &index) const;
    int rowOf(int section) const;
    int columnOf(int section) const;
    bool hasCell(int row, int column) const;
    enum class Reveal { Nothing, FarCorner };
    void select(const GridSelection &selection, Reveal reveal = Reveal::Nothing);
    void showSelection();
    void adoptSelection();
    bool selectionHoldsRow(int row) const;

    void pressColumn(int section, Qt::KeyboardModifiers modifiers);
    void pressRow(int section, Qt::KeyboardModifiers modifiers);
    void extendColumns(int column);
    void extendRows(int row);
    void dragOn();
    void endDrag();
    PointedCell pointedCell() const;
    GridRange selectedRecords() const;
    void bringIntoView(int row, int column);
    void revealFarCorner();
    void tellMenuKey(Qt::KeyboardModifiers modifiers);
    QPoint menuPosition(int row);

    std::unique_ptr<PointerPlace> m_pointer;
    GridModel *m_model;
    GridHeader *m_columnHeader;
    GridHeader *m_rowHeader;
    GridDelegate *m_delegate;
    int m_fixedColumnTwips;
    std::vector<int> m_columnTwips;  // width of column k at k - 1
    std::map<int, int> m_rowHeights; // in pixels, of the rows that were resized
    GridReach m_reach;
    GridReach m_leastReach;
    GridSelection m_selection{0, 1, 0, 1};
    int m_silences = 0;
    QPoint m_dragPosition;
    QBasicTimer m_dragTimer;
    bool m_dragging = false;
    bool m_clickDue = false;
    bool m_showing = false; // the selection model is being brought in step
    bool m_visible = true;
    bool m_hidden = false; // by a GridHidden
    bool m_userResizing = true;
    bool m_filling = false; // by a GridFill
    bool m_someShown = false;
    bool m_updatingGeometries = false;
    bool m_stretchLast = false;
    int m_stretched = -1;      // the column that is drawn wider than it is
    bool m_stretching = false; // its drawn width is being set
};

/// While it lives, the grid raises nothing: for a grid that follows another one.
class GridSilence {
public:
    explicit GridSilence(Grid &grid);
    ~GridSilence();
    GridSilence(const GridSilence &) = delete;
    GridSilence &operator=(const GridSilence &) = delete;

private:
    Grid &m_grid;
};

/// Hides a grid for the time that many of its cells are painted: its Visible flag is False, nothing of it is drawn, it
/// keeps the keyboard focus and an edit in it goes on. Shown again on destruction, unless its flag was set meanwhile.
class GridHidden {
public:
    explicit GridHidden(Grid &grid);
    ~GridHidden();
    GridHidden(const GridHidden &) = delete;
    GridHidden &operator=(const GridHidden &) = delete;

private:
    Grid &m_grid;
    bool m_ours = false;
};

} // namespace qir
