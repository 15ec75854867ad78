#include "platform/grid/Grid.h"

#include "platform/controls/PointerPlace.h"
#include "platform/controls/Twips.h"
#include "platform/controls/UserScrollBar.h"
#include "platform/grid/ClipText.h"
#include "platform/grid/ColumnMeasure.h"
#include "platform/grid/GridDelegate.h"
#include "platform/grid/GridHeader.h"
#include "platform/grid/GridModel.h"
#include "platform/loop/MessageLoop.h"

#include <QAbstractButton>
#include <QItemSelectionModel>

#include <algorithm>

namespace qir {

namespace {

constexpr int fixedColumnTwips = 300;

} // namespace

Grid::Grid(QWidget *parent)
    : QTableView(parent)
    , m_pointer(std::make_unique<PointerPlace>())
    , m_model(new GridModel(this))
    , m_columnHeader(new GridHeader(Qt::Horizontal, *m_pointer, this))
    , m_rowHeader(new GridHeader(Qt::Vertical, *m_pointer, this))
    , m_delegate(new GridDelegate(this))
    , m_fixedColumnTwips(fixedColumnTwips) {
    setHorizontalHeader(m_columnHeader);
    setVerticalHeader(m_rowHeader);
    setModel(m_model);
    setItemDelegate(m_delegate);
    // One rectangle is ever selected, and only by this class: the view's own ways of selecting are overridden.
    setSelectionMode(ContiguousSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setAutoScroll(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerItem);
    setVerticalScrollMode(ScrollPerItem);
    // Without kerning and optional ligatures the width of a text is the sum of its characters', which is what lets
    // columns be fitted without laying out every text; digits stand under each other too.
    QFont plain;
    plain.setKerning(false);
    plain.setStyleStrategy(QFont::PreferNoShaping);
    setFont(plain);
    fitRowHeight();
    setColWidth(0, fixedColumnTwips);

    connectHeaders();
    connectScrollBars();
    connect(m_model, &QAbstractItemModel::modelReset, this, &Grid::adoptShape);
    connect(m_model, &GridModel::textsChanged, this, &Grid::TextsChanged);
    connect(m_model, &GridModel::textsReplaced, this, &Grid::TextsReplaced);
    // Rows that differ have a sign in their header.
    connect(
        m_model, &QAbstractItemModel::dataChanged, m_rowHeader,
        [this](const QModelIndex &first, const QModelIndex &last) { m_rowHeader->drawAgain(first.row(), last.row()); });
    connect(m_model, &QAbstractItemModel::dataChanged, this, &Grid::drawLinesAgain);
    connect(m_model, &QAbstractItemModel::dataChanged, m_delegate, &GridDelegate::cellsChanged);
    connect(m_model, &QAbstractItemModel::modelReset, m_delegate, &GridDelegate::cellsChanged);
    m_model->setShape(1, 2);
}

Grid::~Grid() = default;

void Grid::connectHeaders() {
    // The headers must not ask about whole columns (see GridHeader): they get a selection that stays empty.
    auto *nothingSelected = new QItemSelectionModel(m_model, this);
    for (GridHeader *header : {m_columnHeader, m_rowHeader}) {
        header->setSelectionModel(nothingSelected);
        disconnect(header, &QHeaderView::sectionPressed, this, nullptr);
        disconnect(header, &QHeaderView::sectionEntered, this, nullptr);
        disconnect(header, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);
        connect(header, &QHeaderView::sectionClicked, this, &Grid::Click);
        connect(header, &QHeaderView::sectionDoubleClicked, this, &Grid::DblClick);
    }
    connect(m_columnHeader, &GridHeader::pressed, this, &Grid::pressColumn);
    connect(m_columnHeader, &GridHeader::draggedTo, this, [this](int section) { extendColumns(columnOf(section)); });
    connect(m_rowHeader, &GridHeader::pressed, this, &Grid::pressRow);
    connect(m_rowHeader, &GridHeader::draggedTo, this, [this](int section) { extendRows(rowOf(section)); });
    connect(m_columnHeader, &GridHeader::buttonDown, this,
            [this](Qt::MouseButton button, int section, const QPoint &at) {
                setFocus(Qt::MouseFocusReason);
                Q_EMIT MouseDown(button, 0, section < 0 ? -1 : columnOf(section), at);
            });
    connect(m_rowHeader, &GridHeader::buttonDown, this, [this](Qt::MouseButton button, int section, const QPoint &at) {
        setFocus(Qt::MouseFocusReason);
        const int row = section < 0 ? -1 : rowOf(section);
        if (button == Qt::RightButton && row > 0 && !selectionHoldsRow(row))
            pressRow(section, Qt::NoModifier);
        Q_EMIT MouseDown(button, row, row < 0 ? -1 : 0, at);
    });
    connect(m_columnHeader, &QHeaderView::sectionResized, this, [this](int section, int, int pixels) {
        const auto place = static_cast<std::size_t>(columnOf(section) - 1);
        if (!m_stretching && place < m_columnTwips.size())
            m_columnTwips[place] = toTwips(pixels);
    });
    connect(m_columnHeader, &GridHeader::resizedByUser, this,
            [this](int section) { Q_EMIT ColumnResized(columnOf(section)); });
    connect(m_rowHeader, &GridHeader::resizedByUser, this, [this](int section, int pixels) {
        m_rowHeights[rowOf(section)] = pixels;
        Q_EMIT RowResized(rowOf(section));
    });
    connect(m_columnHeader, &QHeaderView::sectionHandleDoubleClicked, this, [this](int section) {
        ColumnMeasure measure(font(), this);
        const int column = columnOf(section);
        setColWidth(column, measure.columnWidth(TextMatrix(0, column), texts().column(column)));
    });
    for (QAbstractButton *corner : findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        connect(corner, &QAbstractButton::clicked, this, &Grid::Click);
        connect(corner, &QAbstractButton::pressed, this,
                [this] { Q_EMIT MouseDown(Qt::LeftButton, 0, 0, QCursor::pos()); });
    }
}

void Grid::connectScrollBars() {
    auto *across = new UserScrollBar(Qt::Horizontal, this);
    auto *down = new UserScrollBar(Qt::Vertical, this);
    setHorizontalScrollBar(across);
    setVerticalScrollBar(down);
    for (UserScrollBar *bar : {across, down}) {
        bar->watch();
        connect(bar, &UserScrollBar::scrolledByUser, this, &Grid::Scroll);
    }
}

// Size and contents

int Grid::Rows() const {
    return m_model->rows();
}

int Grid::Cols() const {
    return m_model->columns();
}

void Grid::setRows(int rows) {
    m_model->setShape(rows, Cols());
}

void Grid::setCols(int columns) {
    m_model->setShape(Rows(), columns);
}

void Grid::clear() {
    m_selection = singleCell(0, 1);
    m_rowHeights.clear();
    m_model->setTable({QString()}, CellTexts(1, 0));
}

void Grid::adoptShape() {
    // New columns begin with the width that the header gives them; those that stay keep theirs to the twip.
    const auto fields = static_cast<std::size_t>(Cols() - 1);
    const std::size_t known = std::min(m_columnTwips.size(), fields);
    m_columnTwips.resize(fields, toTwips(m_columnHeader->defaultSectionSize()));
    if (m_someShown || !showsAll()) {
        adoptShown();
    } else {
        for (std::size_t i = 0; i < fields; ++i) {
            const int pixels = m_columnHeader->sectionSize(static_cast<int>(i));
            const bool stretched = i < known && static_cast<int>(i) == m_stretched;
            if (!stretched && (i >= known || drawnWidth(m_columnTwips[i]) != pixels))
                m_columnTwips[i] = toTwips(pixels);
        }
    }
    m_selection = cutTo(m_selection, extent());
    showSelection();
}

QString Grid::TextMatrix(int row, int column) const {
    return m_model->text(row, column);
}

void Grid::setTextMatrix(int row, int column, const QString &text) {
    m_model->setText(row, column, text);
}

int Grid::RowData(int row) const {
    return m_model->rowData().at(row);
}

void Grid::setRowData(int row, int number) {
    m_model->rowData().set(row, number, Rows());
}

int Grid::ColData(int column) const {
    return m_model->columnData().at(column);
}

void Grid::setColData(int column, int number) {
    m_model->columnData().set(column, number, Cols());
}

void Grid::renumberRows() {
    m_model->rowData().reset();
}

bool Grid::rowsAreRecords() const {
    return m_model->rowData().isIdentity();
}

void Grid::reorderRecords(const std::vector<std::uint32_t> &order) {
    m_model->reorderRecords(order);
}

const CellTexts &Grid::texts() const {
    return m_model->texts();
}

// Colours

const CellColours &Grid::colours() const {
    return m_model->colours();
}

void Grid::setCellBackColor(int row, int column, CellColour colour) {
    m_model->setColour(row, column, colour);
}

void Grid::paintDifferences(const BitMatrix &different, const GridRange &window) {
    m_model->paint(window, different);
}

void Grid::paintDifferences(const BitMatrix &different) {
    m_model->paint({1, 1, Rows() - 1, Cols() - 1}, different);
}

void Grid::setCellWords(std::function<QString(int row, int column)> words) {
    m_model->setCellWords(std::move(words));
}

// Current cell and selection

GridExtent Grid::extent() const {
    const int rowHeight = std::max(m_rowHeader->defaultSectionSize(), 1);
    return {Rows(), Cols(), std::max(viewport()->height() / rowHeight, 1)};
}

bool Grid::hasCell(int row, int column) const {
    return row >= 0 && row < Rows() && column >= 0 && column < Cols();
}

void Grid::setRow(int row) {
    setSelection(singleCell(row, Col()));
}

void Grid::setCol(int column) {
    setSelection(singleCell(Row(), column));
}

void Grid::setRowSel(int row) {
    setSelection({Row(), Col(), row, ColSel()});
}

void Grid::setColSel(int column) {
    setSelection({Row(), Col(), RowSel(), column});
}

void Grid::setSelection(const GridSelection &selection) {
    select(selection);
    rethrowCarried();
}

void Grid::select(const GridSelection &selection, Reveal reveal) {
    if (selection == m_selection || !hasCell(selection.row, selection.column) ||
        !hasCell(selection.rowEnd, selection.columnEnd))
        return;
    showCell(selection.row, selection.column);
    const bool leaves = selection.row != Row() || selection.column != Col();
    if (leaves && m_silences == 0)
        Q_EMIT LeaveCell();
    m_selection = selection;
    showSelection();
    if (reveal == Reveal::FarCorner)
        revealFarCorner(); // before SelChange: whoever follows goes where this grid has gone
    if (m_silences == 0)
        Q_EMIT SelChange();
}

void Grid::showSelection() {
    const GridRange range = inView(m_selection.range());
    const QModelIndex current = m_model->cellIndex(Row(), Col());
    m_columnHeader->setMarks(range.firstColumn - 1, range.lastColumn - 1, inView(m_selection).column - 1);
    m_rowHeader->setMarks(range.firstRow - 1, range.lastRow - 1, inView(m_selection).row - 1);

    m_showing = true;
    const int firstRow = std::max(range.firstRow, 1);
    const int firstColumn = std::max(range.firstColumn, 1);
    if (!current.isValid()) {
        selectionModel()->clear();
    } else {
        const QItemSelection block(m_model->index(firstRow - 1, firstColumn - 1),
                                   m_model->index(range.lastRow - 1, range.lastColumn - 1));
        selectionModel()->select(block, QItemSelectionModel::ClearAndSelect);
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    }
    m_showing = false;
}

void Grid::adoptSelection() {
    // Assistive tools and tests may select through the selection model; what they leave there becomes the selection.
    const PointedCell current = cellAt(currentIndex());
    GridRange range;
    for (const QItemSelectionRange &part : selectionModel()->selection()) {
        const GridRange cells{rowOf(part.top()), columnOf(part.left()), rowOf(part.bottom()), columnOf(part.right())};
        if (range.isEmpty())
            range = cells;
        else
            range = {std::min(range.firstRow, cells.firstRow), std::min(range.firstColumn, cells.firstColumn),
                     std::max(range.lastRow, cells.lastRow), std::max(range.lastColumn, cells.lastColumn)};
    }
    const int row = current.row;
    const int column = current.column;
    const bool onRowEdge = row == range.firstRow || row == range.lastRow;
    const bool onColumnEdge = column == range.firstColumn || column == range.lastColumn;
    if (range.isEmpty()) {
        if (row > 0)
            select(singleCell(row, column));
    } else if (row > 0 && onRowEdge && onColumnEdge) {
        select({row, column, row == range.firstRow ? range.lastRow : range.firstRow,
                column == range.firstColumn ? range.lastColumn : range.firstColumn});
    } else {
        select({range.firstRow, range.firstColumn, range.lastRow, range.lastColumn});
    }
}

void Grid::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    m_model->tellCurrent(rowOf(current.row()), columnOf(current.column())); // before anybody is told of it
    QTableView::currentChanged(current, previous);
    if (!m_showing)
        adoptSelection();
}

void Grid::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    // Not the table view's own: with assistive tools active it lists every selected cell to find the first.
    QAbstractItemView::selectionChanged(selected, deselected);
    if (!m_showing)
        adoptSelection();
}

void Grid::selectAll() {
    if (const GridRange cells = shownCells(); cells.firstRow > 0 && cells.firstColumn > 0)
        select({cells.firstRow, cells.firstColumn, cells.lastRow, cells.lastColumn});
}

QString Grid::Clip() const {
    return clipText(inView(m_selection.range()), [this](int viewRow, int viewColumn, QString &text) {
        const int row = rowOf(viewRow - 1);
        const int column = columnOf(viewColumn - 1);
        if (row == 0)
            text = TextMatrix(row, column);
        else
            texts().read(column, row, text);
    });
}

GridRange Grid::selectedRecords() const {
    const GridRange selected = m_selection.range();
    return {std::max(selected.firstRow, 1), std::max(selected.firstColumn, 1), selected.lastRow, selected.lastColumn};
}

bool Grid::isUnlikeStored(int row, int column) const {
    return m_model->unlike().at(row, column);
}

void Grid::setUnlikeStored(int row, int column, bool unlike) {
    if (!m_model->setUnlike(row, column, unlike))
        return;
    m_delegate->cellsChanged();
    update(cellIndex(row, column));
    drawLinesAgain();
}

/// From right to left the line beside a cell is not within what the view draws again for it.
void Grid::drawLinesAgain() {
    if (isRightToLeft())
        viewport()->update();
}

void Grid::setStoredWords(std::function<QString(int row, int column)> words) {
    m_model->setStoredWords(std::move(words));
}

void Grid::setTexts(const std::function<void(const SetText &set)> &write) {
    GridModel::TextBlock cells(*m_model);
    write([&cells](int row, int column, QStringView text) { cells.set(row, column, text); });
}

void Grid::setClip(const QString &text) {
    GridModel::TextBlock cells(*m_model);
    layClipText(text, selectedRecords(),
                [&cells](int row, int column, QStringView value) { cells.set(row, column, value); });
}

void Grid::copyTexts(const CellTexts &texts, const GridRange &range) {
    GridModel::TextBlock cells(*m_model);
    QString text;
    for (int column = std::max(range.firstColumn, 1); column <= std::min(range.lastColumn, Cols() - 1); ++column) {
        for (int row = std::max(range.firstRow, 1); row <= std::min(range.lastRow, Rows() - 1); ++row) {
            texts.read(column, row, text);
            cells.set(row, column, text);
        }
    }
}

void Grid::setClip(const CellTexts &block) {
    const GridRange records = selectedRecords();
    const int lastRow = std::min(records.lastRow, records.firstRow + block.records() - 1);
    const int lastColumn = std::min(records.lastColumn, records.firstColumn + block.fields() - 1);
    GridModel::TextBlock cells(*m_model);
    QString text;
    for (int row = records.firstRow; row <= lastRow; ++row) {
        for (int column = records.firstColumn; column <= lastColumn; ++column) {
            block.read(column - records.firstColumn + 1, row - records.firstRow + 1, text);
            cells.set(row, column, text);
        }
    }
}

} // namespace qir
