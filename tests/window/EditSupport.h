#pragma once

#include "db/FieldTypes.h"
#include "tests/support/Hands.h"
#include "tests/window/EditorFixture.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>

namespace qir::test {

/// Files that tests of editing open.
class EditFiles {
public:
    /// Makes a database file and gives its path. Throws what the component throws.
    QString make(const QString &name, const std::vector<TableOfTexts> &tables) const {
        const QString path = m_folder.filePath(name);
        makeDatabase(path, tables);
        return path;
    }

private:
    QTemporaryDir m_folder;
};

inline QLineEdit &editorOf(EditorFixture &fixture, int pane) {
    return fixture.editor().txtEdit(pane);
}

inline bool editing(EditorFixture &fixture, int pane) {
    return !editorOf(fixture, pane).isHidden();
}

/// The middle of a record cell in the grid's viewport, after bringing the cell into view.
inline QPoint cellCentre(EditorFixture &fixture, int pane, int row, int column) {
    Grid &grid = fixture.grid(pane);
    const QModelIndex index = grid.model()->index(row - 1, column - 1);
    grid.scrollTo(index);
    return (grid.visualRect(index) & grid.viewport()->rect()).center();
}

inline void doubleClickCell(EditorFixture &fixture, int pane, int row, int column) {
    hands::doubleClick(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::NoModifier,
                       cellCentre(fixture, pane, row, column));
}

/// Opens the editor over a record cell as a person with a keyboard does.
inline void beginEdit(EditorFixture &fixture, int pane, int row, int column) {
    fixture.clickCell(pane, row, column);
    hands::key(&fixture.grid(pane), Qt::Key_Return);
}

/// Replaces the text in an open editor key by key.
inline void retype(EditorFixture &fixture, int pane, const QString &text) {
    QLineEdit &editor = editorOf(fixture, pane);
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
    hands::key(&editorOf(fixture, pane), Qt::Key_Return);
}

/// Selects a block of record cells with the mouse: a click and a Shift+click.
inline void selectBlock(EditorFixture &fixture, int pane, const GridSelection &block) {
    fixture.clickCell(pane, block.row, block.column);
    hands::click(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::ShiftModifier,
                 cellCentre(fixture, pane, block.rowEnd, block.columnEnd));
}

/// The value that the component holds in the table that a pane shows.
inline QVariant stored(EditorFixture &fixture, int pane, int record, int field) {
    fixture.editor().pane(pane).makeShownTableCurrent();
    const QirDatabase &database = fixture.database(pane);
    database.setQIRTableRecordsPointerOut(record);
    return database.QIRTableRecordSetByIndex(field);
}

/// All values of the table that a pane shows, record by record.
inline QList<QVariantList> storedRecords(EditorFixture &fixture, int pane) {
    fixture.editor().pane(pane).makeShownTableCurrent();
    const QirDatabase &database = fixture.database(pane);
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
    hands::click(fixture.grid(pane).viewport(), Qt::RightButton, Qt::NoModifier,
                 cellCentre(fixture, pane, row, column));
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

} // namespace qir::test
