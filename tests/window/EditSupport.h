#pragma once

#include "db/FieldTypes.h"
#include "tests/support/Hands.h"
#include "tests/window/EditorFixture.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

namespace qir::test {

/// What the line below the panes says at its left, of the current cell, and at its right, of the databases.
inline QString statusLeft(EditorFixture &fixture) {
    return fixture.window().findChild<QLabel *>(QStringLiteral("statusLeft"))->text();
}

inline QString statusRight(EditorFixture &fixture) {
    return fixture.window().findChild<QLabel *>(QStringLiteral("statusRight"))->text();
}

/// A key struck where the keyboard is, whatever part of the window that may be.
inline void strike(EditorFixture &fixture, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    hands::strike(fixture.window(), key, modifiers, {});
}

/// The texts that a view shows, row by row.
inline QList<QStringList> textsOf(const QAbstractItemModel &model) {
    QList<QStringList> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < model.columnCount(); ++column)
            texts.append(model.index(row, column).data().toString());
        rows.append(texts);
    }
    return rows;
}

inline bool editing(EditorFixture &fixture, int pane) {
    return !fixture.cellEditor(pane).isHidden();
}

/// Turns the wheel over a pane's grid.
inline void turnWheel(EditorFixture &fixture, int pane, int angle) {
    QWidget *viewport = fixture.grid(pane).viewport();
    hands::turnWheel(viewport, viewport->rect().center(), QPoint(0, angle));
}

inline void doubleClickCell(EditorFixture &fixture, int pane, int row, int column) {
    hands::doubleClick(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::NoModifier,
                       fixture.cellCentre(pane, row, column));
}

/// Opens the editor over a record cell as a person with a keyboard does.
inline void beginEdit(EditorFixture &fixture, int pane, int row, int column) {
    fixture.clickCell(pane, row, column);
    hands::key(&fixture.grid(pane), Qt::Key_Return);
}

/// Replaces the text in an open editor key by key.
inline void retype(EditorFixture &fixture, int pane, const QString &text) {
    QLineEdit &editor = fixture.cellEditor(pane);
    hands::key(&editor, QKeySequence::SelectAll);
    if (text.isEmpty())
        hands::key(&editor, Qt::Key_Delete);
    else
        hands::type(&editor, text);
}

/// Opens the editor over a record cell, types a text in place of its own and closes the editor.
inline void edit(EditorFixture &fixture, int pane, int row, int column, const QString &text) {
    beginEdit(fixture, pane, row, column);
    retype(fixture, pane, text);
    hands::key(&fixture.cellEditor(pane), Qt::Key_Return);
}

/// Selects a block of record cells with the mouse: a click and a Shift+click.
inline void selectBlock(EditorFixture &fixture, int pane, const GridSelection &block) {
    fixture.clickCell(pane, block.row, block.column);
    hands::click(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::ShiftModifier,
                 fixture.cellCentre(pane, block.rowEnd, block.columnEnd));
}

/// The value that the component holds in the table that a pane shows.
inline QVariant stored(EditorFixture &fixture, int pane, int record, int field) {
    const QirDatabase &database = fixture.atShownTable(pane);
    database.setQIRTableRecordsPointerOut(record);
    return database.QIRTableRecordSetByIndex(field);
}

/// All values of the table that a pane shows, record by record.
inline QList<QVariantList> storedRecords(EditorFixture &fixture, int pane) {
    const QirDatabase &database = fixture.atShownTable(pane);
    QList<QVariantList> records;
    for (int r = 1; r <= database.QirTableRecordsCount(); ++r) {
        QVariantList record;
        for (int f = 1; f <= database.QirTableFieldsCount(); ++f)
            record.append(stored(fixture, pane, r, f));
        records.append(record);
    }
    return records;
}

/// Presses the right button on a record cell; a pop-up that opens stays open.
inline void rightPressCell(EditorFixture &fixture, int pane, int row, int column) {
    hands::click(fixture.grid(pane).viewport(), Qt::RightButton, Qt::NoModifier, fixture.cellCentre(pane, row, column));
}

/// The middle of a column's header in the header's viewport.
inline QPoint headerCentre(EditorFixture &fixture, int pane, int column) {
    const QHeaderView *header = fixture.grid(pane).horizontalHeader();
    return {header->sectionViewportPosition(column - 1) + header->sectionSize(column - 1) / 2, header->height() / 2};
}

inline void rightPressHeader(EditorFixture &fixture, int pane, int column) {
    hands::click(fixture.grid(pane).horizontalHeader()->viewport(), Qt::RightButton, Qt::NoModifier,
                 headerCentre(fixture, pane, column));
}

/// Where an editor has to stand: over the part of the current cell that shows, in the coordinates of the pane's frame.
inline QRect currentCell(EditorFixture &fixture, int pane) {
    const Grid &grid = fixture.grid(pane);
    const QRect cell = grid.visualRect(grid.model()->index(grid.Row() - 1, grid.Col() - 1)) & grid.viewport()->rect();
    return cell.translated(grid.viewport()->mapTo(grid.parentWidget(), QPoint()));
}

/// The pane's editor is open over that cell, which is the current one, and has the focus.
inline bool isEdited(EditorFixture &fixture, int row, int column) {
    return editing(fixture, 0) && fixture.cellEditor(0).hasFocus() && fixture.editedCell().row == row &&
           fixture.editedCell().column == column && fixture.grid(0).selection() == singleCell(row, column) &&
           fixture.cellEditor(0).geometry() == currentCell(fixture, 0) && !currentCell(fixture, 0).isEmpty();
}

} // namespace qir::test
