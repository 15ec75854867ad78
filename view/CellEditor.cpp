#include "view/CellEditor.h"

#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/TableMarks.h"
#include "db/AssegnaARecordset.h"
#include "pane/ActivePane.h"

#include "pane/StoredMarks.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/GridAlignment.h"
#include "view/StepNames.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>
#include <QStyle>

#include <algorithm>
#include <limits>
#include <optional>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int caretRoom = 2; // that a text box keeps behind a text at its right

/// Black on yellow in every colour scheme, the rest as the desktop has it.
QPalette editorPalette() {
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(255, 255, 0));
    palette.setColor(QPalette::Text, QColor(Qt::black));
    return palette;
}

/// The first column from `column` on, in steps of 1 or -1, that is shown and has a width; 0 when there is none.
int columnThatShows(const Grid &grid, int column, int step) {
    while (column >= 1 && column < grid.Cols() && (grid.ColWidth(column) < 1 || !grid.shows(0, column)))
        column += step;
    return column < grid.Cols() ? std::max(column, 0) : 0;
}

std::optional<GridSelection> cellBeside(const Grid &grid, int row, int column, int step) {
    int next = columnThatShows(grid, column + step, step);
    if (next == 0) {
        row = grid.nextShownRow(row + step, step);
        next = columnThatShows(grid, step > 0 ? 1 : grid.Cols() - 1, step);
    }
    if (next == 0 || row < 1 || row >= grid.Rows())
        return std::nullopt;
    return singleCell(row, next);
}

} // namespace

void CellEditor::connectPane(int pane) {
    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    // A cell's text is taken whole, whatever its length: opening the editor must not change it.
    txtEdit.setMaxLength(std::numeric_limits<int>::max());
    connect(&txtEdit, &QLineEdit::textChanged, this, [this, pane] { runCommand([&] { txtEdit_Change(pane); }); });
    connect(&txtEdit, &QLineEdit::returnPressed, this,
            [this, pane] { runCommand([&] { txtEdit_KeyPress(pane, enterCode); }); });
    txtEdit.installEventFilter(this);
}

bool CellEditor::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && tabPressed(watched, static_cast<const QKeyEvent &>(*event)))
        return true;
    return QObject::eventFilter(watched, event);
}

bool CellEditor::tabPressed(const QObject *watched, const QKeyEvent &key) {
    const bool back = key.key() == Qt::Key_Backtab || key.modifiers().testFlag(Qt::ShiftModifier);
    if ((key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab) ||
        key.modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier))
        return false;
    for (const int pane : {0, 1}) {
        if (watched == &m_editor.txtEdit(pane)) {
            runCommand([&] { editBeside(pane, back ? -1 : 1); });
            return true;
        }
    }
    return false;
}

void CellEditor::placeEditorLater(int pane) {
    if (!m_editor.txtEdit(pane).isHidden())
        QMetaObject::invokeMethod(
            this, [this, pane] { placeEditor(pane); }, Qt::QueuedConnection);
}

void CellEditor::IniziaEdit(int pane) {
    if (m_editor.Tabella(pane).MouseRow() == 0) {
        Interrompiedit(pane);
        return;
    }
    openEditor(pane);
}

void CellEditor::openEditor(int pane) {
    Grid &grid = m_editor.Tabella(pane);
    // No table shown, no record, or the empty column of a table without fields.
    if (!grid.Visible() || grid.Row() < 1 || grid.ColData(grid.Col()) < 1)
        return;
    m_editor.endEdit(); // of this pane or of the other one
    m_editor.cellEdit().begin(grid.Row(), grid.Col());
    grid.setUserResizing(false);

    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    dressEditor(pane);
    txtEdit.setText(grid.TextMatrix(grid.Row(), grid.Col())); // the cell's own text: writes nothing
    txtEdit.end(false);
    coverCell(pane);
    AllineaTopLeftTabelle(m_editor, pane); // the cell may have been scrolled into view
    txtEdit.show();
    txtEdit.raise();
    txtEdit.setFocus(Qt::OtherFocusReason);
}

void CellEditor::dressEditor(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    txtEdit.setFont(grid.font());
    txtEdit.setPalette(editorPalette());
    // The text stands where the cell showed it, whichever way it runs.
    const QModelIndex cell = grid.cellIndex(grid.Row(), grid.Col());
    const Qt::Alignment alignment = QStyle::visualAlignment(
        grid.layoutDirection(), static_cast<Qt::Alignment>(cell.data(Qt::TextAlignmentRole).toInt()));
    txtEdit.setAlignment(alignment | Qt::AlignAbsolute);
    txtEdit.setTextMargins(0, 0, alignment.testFlag(Qt::AlignRight) ? -caretRoom : 0, 0);
}

void CellEditor::coverCell(int pane) {
    Grid &grid = m_editor.Tabella(pane);
    grid.bringCellIntoView();
    // Both have the pane's frame as parent. A cell of which nothing shows leaves no room for the editor either.
    m_editor.txtEdit(pane).setGeometry(grid.cellRectangle().translated(grid.pos()));
}

void CellEditor::placeEditor(int pane) {
    if (m_editor.txtEdit(pane).isHidden())
        return;
    coverCell(pane);
    AllineaTopLeftTabelle(m_editor, pane); // the cell may have been scrolled into view
}

void CellEditor::Interrompiedit(int pane) {
    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    if (txtEdit.isHidden())
        return;
    // What an input method is still composing was typed, so it is written like the rest.
    if (txtEdit.hasFocus())
        QGuiApplication::inputMethod()->commit();
    m_editor.endEdit();
}

void CellEditor::editBeside(int pane, int step) {
    Grid &grid = m_editor.Tabella(pane);
    const std::optional<GridSelection> cell = cellBeside(grid, m_editor.RigaEdit(), m_editor.ColonnaEdit(), step);
    Interrompiedit(pane);
    if (!cell)
        return;
    grid.setSelection(*cell);
    openEditor(pane); // wherever the pointer rests: a key asks for it
}

void CellEditor::ScriviDaEditADtb(int pane) {
    if (m_editor.RigaEdit() >= 1)
        writeCell(pane, m_editor.RigaEdit(), m_editor.ColonnaEdit(), m_editor.txtEdit(pane).text());
}

void CellEditor::writeCell(int pane, int row, int column, const QString &text) {
    Grid &grid = m_editor.Tabella(pane);
    if (text == grid.TextMatrix(row, column))
        return;
    grid.setTextMatrix(row, column, text); // the snapshot of the texts is the grid's own
    undoneOnError(
        [&] {
            m_editor.pane(pane).makeShownTableCurrent();
            const QirDatabase &database = m_editor.OggettoDtb(pane);
            // All keystrokes of one edit are one step.
            const ChangeStep step(
                database,
                QObject::tr("Edit of %1.%2").arg(m_editor.pane(pane).TabellaMostrata(), fieldNameOf(grid, column)),
                m_editor.RigaEdit() >= 1 ? QString::number(m_editor.cellEdit().number()) : QString());
            database.setQIRTableRecordsPointerOut(grid.RowData(row));
            AssegnaARecordset(database, grid.ColData(column), text);
            m_stored.look(pane, row, column);
        },
        [&] { m_editor.pane(pane).textsLeftUnstored(); });
    updateDifference(pane, row, column);
}

void CellEditor::updateDifference(int pane, int row, int column) {
    if (!m_editor.Tabella(pane).Visible() || !m_editor.gridsShowSameTable())
        return;
    const Grid &left = m_editor.Tabella(0);
    const Grid &right = m_editor.Tabella(1);
    const bool inBoth = row < std::min(left.Rows(), right.Rows()) && column < std::min(left.Cols(), right.Cols());
    const bool different = !inBoth || m_editor.TestiCelle(0).at(column, row) != m_editor.TestiCelle(1).at(column, row);
    m_editor.foundDifferences().set(static_cast<std::size_t>(row), static_cast<std::size_t>(column), different);
    for (const int each : {0, 1})
        SetEqualColor(m_editor, each, row, column);
    m_marks.MostraTabellaDiversaInLista();
}

void CellEditor::txtEdit_Change(int pane) {
    activatePane(m_editor, pane);
    ScriviDaEditADtb(pane);
}

void CellEditor::txtEdit_KeyPress(int pane, int KeyAscii) {
    if (KeyAscii == enterCode)
        Interrompiedit(pane);
}

} // namespace qir
