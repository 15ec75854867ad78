#include "tests/window/model/Agreement.h"

#include "db/FieldTypes.h"
#include "tests/model/Content.h"
#include "tests/window/EditSupport.h"

#include <QGroupBox>
#include <QMenu>

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QString paneName(int index) {
    return u"pane %1: "_s.arg(index);
}

/// The table that commands work on must be the one that the editor takes for current.
QString currentTableDisagreement(EditorFixture &fixture, const EditorModel &model, int index) {
    const QString &current = fixture.editor().pane(index).TabellaCorrente();
    if (current.isEmpty())
        return {};
    const PlainTable *table = model.pane(index).content.find(current);
    if (table == nullptr)
        return u"'%1', which does not exist, passes for current; "_s.arg(current);
    const QirDatabase &database = fixture.database(index);
    const bool same = database.QirTableFieldsCount() == table->fieldCount() &&
                      database.QirTableRecordsCount() == table->recordCount() &&
                      (table->fieldCount() == 0 || database.QIRTableFieldName(1) == table->field(0).name);
    return same ? QString()
                : u"another table than '%1' is current: %2 records of %3 fields for %4 of %5; "_s.arg(current)
                      .arg(database.QirTableRecordsCount())
                      .arg(database.QirTableFieldsCount())
                      .arg(table->recordCount())
                      .arg(table->fieldCount());
}

QString componentDisagreement(EditorFixture &fixture, EditorModel &model, int index) {
    ModelPane &it = model.pane(index);
    const QirDatabase &database = fixture.database(index);
    QString text;
    if (database.DtbHasChanged() != it.changed)
        text += u"the changed flag should be %1; "_s.arg(it.changed);
    text += currentTableDisagreement(fixture, model, index);
    text += difference(readAll(database), it.content);
    const QString current = fixture.editor().pane(index).TabellaCorrente();
    if (!current.isEmpty() && database.ExistTable(current))
        database.QIRTableRecordSource(current); // the editor finds what it left
    return text;
}

QString selectionDisagreement(EditorFixture &fixture, const EditorModel &model, int index) {
    const ModelPane &it = model.pane(index);
    const int selected = fixture.list(index).ListIndex();
    return selected == it.selected ? QString()
                                   : u"line %1 is selected instead of %2; "_s.arg(selected).arg(it.selected);
}

QString linesDisagreement(EditorFixture &fixture, const EditorModel &model, int index) {
    const ModelPane &it = model.pane(index);
    const ListBox &list = fixture.list(index);
    QStringList shown;
    for (int line = 0; line < list.ListCount(); ++line)
        shown.append(u"%1=%2"_s.arg(list.List(line)).arg(list.ItemData(line)));
    QStringList expected;
    for (const ModelLine &line : it.lines)
        expected.append(u"%1=%2"_s.arg(line.text).arg(line.number));
    if (shown == expected)
        return {};
    return u"the list shows '%1' instead of '%2'; "_s.arg(shown.join(u'|'), expected.join(u'|'));
}

QString gridDisagreement(EditorFixture &fixture, const EditorModel &model, int index) {
    const ModelPane &it = model.pane(index);
    const Grid &grid = fixture.grid(index);
    const PlainTable *table = it.selectedTable();
    const bool visible = table != nullptr && table->recordCount() > 0;
    if (grid.Visible() != visible)
        return visible ? u"the grid is hidden; "_s : u"the grid shows; "_s;
    if (table == nullptr)
        return {};
    QStringList headers;
    for (int c = 1; c < grid.Cols(); ++c)
        headers.append(grid.TextMatrix(0, c));
    QStringList expected;
    for (const PlainField &field : table->fields)
        expected.append(field.name + u" ["_s + DBTypeName(field.type) + u"]"_s);
    if (headers != expected)
        return u"the headers are '%1' instead of '%2'; "_s.arg(headers.join(u'|'), expected.join(u'|'));
    const QList<QStringList> shown = fixture.texts(index);
    if (std::equal(shown.begin(), shown.end(), it.texts.begin(), it.texts.end()))
        return {};
    QString rows;
    for (const QStringList &row : shown)
        rows += row.join(u',') + u'|';
    QString wanted;
    for (const QStringList &row : it.texts)
        wanted += row.join(u',') + u'|';
    return u"the grid shows '%1' instead of '%2'; "_s.arg(rows, wanted);
}

QString cellsText(const Cells &cells) {
    QString text;
    for (const auto &[row, column] : cells)
        text += u"(%1, %2)"_s.arg(row).arg(column);
    return text;
}

/// The cells that differ, and the colours of all that can be seen.
QString differencesDisagreement(EditorFixture &fixture, const EditorModel &model) {
    QString text;
    const auto expect = [&text](const Cells &found, const Cells &expected, const QString &what) {
        if (found != expected)
            text += u"%1: '%2' instead of '%3'; "_s.arg(what, cellsText(found), cellsText(expected));
    };
    if (model.sameTableShown()) {
        const BitMatrix &different = fixture.editor().CelleDiverse();
        Cells marked;
        for (int r = 1; r < std::max(fixture.grid(0).Rows(), fixture.grid(1).Rows()); ++r)
            for (int c = 1; c < std::max(fixture.grid(0).Cols(), fixture.grid(1).Cols()); ++c)
                if (different.at(static_cast<std::size_t>(r), static_cast<std::size_t>(c)))
                    marked.insert({r, c});
        expect(marked, model.marks, u"cells are marked"_s);
    }
    for (const int index : {0, 1}) {
        const Grid &grid = fixture.grid(index);
        Cells red;
        for (int r = 1; grid.Visible() && r < grid.Rows(); ++r)
            for (int c = 1; c < grid.Cols(); ++c)
                if (grid.CellBackColor(r, c) == CellColour::Red)
                    red.insert({r, c});
        if (grid.Visible())
            expect(red, model.reds[static_cast<std::size_t>(index)], paneName(index) + u"cells are red"_s);
    }
    return text;
}

/// Each grid has the other's selection as far as it is large enough for it.
QString selectionsDisagreement(EditorFixture &fixture) {
    const Grid &left = fixture.grid(0);
    const Grid &right = fixture.grid(1);
    if (!left.Visible() || !right.Visible())
        return {};
    const auto agree = [](int first, int firstSize, int second, int secondSize) {
        return first == second || first >= secondSize || second >= firstSize;
    };
    const bool same = agree(left.Row(), left.Rows(), right.Row(), right.Rows()) &&
                      agree(left.RowSel(), left.Rows(), right.RowSel(), right.Rows()) &&
                      agree(left.Col(), left.Cols(), right.Col(), right.Cols()) &&
                      agree(left.ColSel(), left.Cols(), right.ColSel(), right.Cols());
    const auto told = [](const Grid &grid) {
        return u"(%1, %2) to (%3, %4)"_s.arg(grid.Row()).arg(grid.Col()).arg(grid.RowSel()).arg(grid.ColSel());
    };
    return same ? QString() : u"the grids have different selections, %1 and %2; "_s.arg(told(left), told(right));
}

QString windowDisagreement(EditorFixture &fixture, const EditorModel &model, int index) {
    const ModelPane &it = model.pane(index);
    const PaneControls &controls = fixture.editor().pane(index).controls();
    QString text;
    if (controls.IDtb->isHidden() != (index == 1 && !model.two))
        text += u"the frame should %1show; "_s.arg(controls.IDtb->isHidden() ? u""_s : u"not "_s);
    if (!controls.IDtb->isHidden() &&
        (controls.IDtb->palette().color(QPalette::Window) == QColor(255, 255, 0)) != (index == model.active))
        text += u"the frame has the wrong colour; "_s;
    if (controls.nomelab->isHidden() == it.open || controls.ListaTabelle->Visible() != it.open ||
        controls.hint->isHidden() != it.open)
        text += u"label, list or hint should or should not show; "_s;
    if (it.open && controls.nomelab->text() != it.label)
        text += u"the label says '%1' instead of '%2'; "_s.arg(controls.nomelab->text(), it.label);
    return text;
}

/// The one editor, where it stays open, stands over a cell and shows its text.
QString editorDisagreement(EditorFixture &fixture) {
    const auto [row, column] = fixture.editedCell();
    int editors = 0;
    QString text;
    for (const int index : {0, 1}) {
        if (!editing(fixture, index))
            continue;
        ++editors;
        const Grid &grid = fixture.grid(index);
        if (!grid.Visible() || row < 1 || row >= grid.Rows() || column < 1 || column >= grid.Cols())
            text += paneName(index) + u"an editor over no cell; "_s;
        else if (fixture.cellEditor(index).text() != grid.TextMatrix(row, column))
            text += paneName(index) + u"the editor shows another text than its cell; "_s;
    }
    if (editors > 1 || (editors == 0 && (row != -1 || column != -1)))
        text += u"%1 editors and cell (%2, %3) under edit; "_s.arg(editors).arg(row).arg(column);
    return text;
}

QString commandsDisagreement(EditorFixture &fixture, const EditorModel &model) {
    const EditorControls &controls = fixture.editor().controls();
    const bool open = model.active >= 0 && model.pane(model.active).open;
    QString text;
    const auto expect = [&text](const auto &entry, bool enabled) {
        if (entry.isEnabled() != enabled)
            text += u"%1 should be %2; "_s.arg(entry.objectName(), enabled ? u"enabled"_s : u"disabled"_s);
    };
    const auto expectCommand = [&](Command command, bool enabled) { expect(controls.action(command), enabled); };
    for (const QMenu *menu :
         {&controls.menu(Menu::TablesMenu), &controls.menu(Menu::FieldsMenu), &controls.menu(Menu::RecordMenu)})
        expect(*menu, open);
    for (const Command command : {Command::SaveMenu, Command::SaveAsMenu, Command::CloseDatabaseMenu,
                                  Command::ChangePassword, Command::ColumnSizeAdjust})
        expectCommand(command, open);
    for (const Command command : {Command::OpenDatabase, Command::EndMenu, Command::OneMenu, Command::TwoMenu})
        expectCommand(command, true);
    expectCommand(Command::CompareAgainMenu, model.bothOpen());
    expectCommand(Command::OtherPaneMenu, model.two);
    if (controls.action(Command::OneMenu).isChecked() == model.two ||
        controls.action(Command::TwoMenu).isChecked() != model.two)
        text += u"the modes' check marks are wrong; "_s;
    if (open)
        expectCommand(Command::RemoveTableMenu, model.pane(model.active).lineCount() > 0);
    const PlainTable *table = open ? model.pane(model.active).selectedTable() : nullptr;
    if (table == nullptr)
        return text;
    const int column = fixture.grid(model.active).Col();
    const bool isText = column >= 1 && column <= table->fieldCount() &&
                        table->field(column - 1).type == static_cast<int>(FieldType::Text);
    expectCommand(Command::RemoveFieldMenu, table->fieldCount() >= 2);
    expectCommand(Command::RemoveRecordMenu, table->recordCount() >= 1);
    expectCommand(Command::ResizeTextField, isText);
    return text;
}

} // namespace

QString disagreement(EditorFixture &fixture, EditorModel &model) {
    EditorContext &editor = fixture.editor();
    QString text;
    if (editor.IndexAttivo() != model.active)
        text += u"pane %1 is active instead of %2; "_s.arg(editor.IndexAttivo()).arg(model.active);
    if (editor.twoPanes() != model.two)
        text += u"the mode is wrong; "_s;
    for (const int index : {0, 1}) {
        if (editor.DtbAperto(index) != model.pane(index).open)
            return text + paneName(index) + u"open or not; "_s;
        if (model.pane(index).open) {
            if (const QString wrong = componentDisagreement(fixture, model, index); !wrong.isEmpty())
                text += paneName(index) + wrong;
        }
        if (const QString wrong = selectionDisagreement(fixture, model, index); !wrong.isEmpty())
            text += paneName(index) + wrong;
    }
    if (!text.isEmpty())
        return text; // what follows goes by the selection
    model.settle();
    for (const int index : {0, 1}) {
        QString wrong = linesDisagreement(fixture, model, index);
        if (wrong.isEmpty())
            wrong = gridDisagreement(fixture, model, index);
        wrong += windowDisagreement(fixture, model, index);
        if (!wrong.isEmpty())
            text += paneName(index) + wrong;
    }
    return text + differencesDisagreement(fixture, model) + selectionsDisagreement(fixture) +
           editorDisagreement(fixture) + commandsDisagreement(fixture, model) + fixture.problems();
}

QString fileDisagreement(const QString &path, const PlainDatabase &expected) {
    const QirDatabase database = QirDatabase::create();
    if (!database.LoadDtb(path, QString()))
        return u"%1 cannot be loaded: %2; "_s.arg(path, database.LastError());
    const QString wrong = difference(readAll(database), expected);
    return wrong.isEmpty() ? wrong : path + u": "_s + wrong;
}

} // namespace qir::test
