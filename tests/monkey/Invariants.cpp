#include "tests/monkey/Invariants.h"

#include "base/LeadingNumber.h"
#include "db/FieldTypes.h"
#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "tests/monkey/ShownCells.h"
#include "tests/window/EditorFixture.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QProgressBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QString windowProblem(EditorContext &editor) {
    if (!editor.listClicks().handled())
        return u"a flag of a running command stayed set"_s;
    if (QApplication::overrideCursor() != nullptr)
        return u"the pointer of a running command stayed"_s;
    if (!editor.controls().window->isEnabled())
        return u"the window stayed disabled"_s;
    if (!editor.controls().ProgressBarCompare->isHidden())
        return u"the progress bar stayed"_s;
    const int active = editor.IndexAttivo();
    if (active < -1 || active > (editor.twoPanes() ? 1 : 0))
        return u"pane %1 is active"_s.arg(active);
    const bool open = active >= 0 && editor.DtbAperto(active);
    for (const Command command : {Command::SaveMenu, Command::SaveAsMenu, Command::CloseDatabaseMenu})
        if (editor.controls().action(command).isEnabled() != open)
            return u"%1 is enabled for another state of the active pane"_s.arg(
                editor.controls().action(command).text());
    return {};
}

QString editProblem(EditorContext &editor) {
    const bool editing = editor.RigaEdit() > 0 && editor.ColonnaEdit() > 0;
    if (!editing && (editor.RigaEdit() != -1 || editor.ColonnaEdit() != -1))
        return u"half a cell is under edit"_s;
    int shown = 0;
    for (const int pane : {0, 1}) {
        if (editor.txtEdit(pane).isHidden())
            continue;
        ++shown;
        const Grid &grid = editor.Tabella(pane);
        if (!grid.Visible() || editor.RigaEdit() >= grid.Rows() || editor.ColonnaEdit() >= grid.Cols())
            return u"the editor of pane %1 stands over no cell"_s.arg(pane);
    }
    if (shown > 1 || (shown == 1) != editing)
        return u"%1 editors show while %2 cell is under edit"_s.arg(shown).arg(editing ? u"a"_s : u"no"_s);
    return {};
}

/// A pane without a component shows nothing.
QString closedPaneProblem(EditorContext &editor, int pane) {
    if (editor.ListaTabelle(pane).ListCount() != 0 && !editor.DtbAperto(1 - pane))
        return u"a list without a database has lines"_s;
    if (editor.Tabella(pane).Visible() || editor.UltimoListIndex(pane) != -1)
        return u"a grid without a database is shown"_s;
    return {};
}

/// The invariant of lists, grids and components, as far as the window tells.
QString openPaneProblem(EditorContext &editor, int pane) {
    const Grid &grid = editor.Tabella(pane);
    if (editor.pane(pane).LoadFailed()) {
        // What was filled before the error stays, under its own line only.
        const bool own = editor.pane(pane).TabellaMostrata() == editor.pane(pane).selectedTableName();
        return grid.Visible() && !own ? u"a table shows under the line of one that was not loaded"_s : QString();
    }
    const bool loaded = editor.pane(pane).realTableSelected();
    if (grid.Visible() != (loaded && grid.Rows() > 1))
        return u"the grid has Visible %1 with %2 rows, %3"_s.arg(grid.Visible())
            .arg(grid.Rows())
            .arg(loaded ? u"a table selected"_s : u"no table to show"_s);
    if (!loaded)
        return {};
    if (editor.pane(pane).TabellaMostrata() != editor.pane(pane).selectedTableName())
        return u"'%1' is selected but '%2' is shown"_s.arg(editor.pane(pane).selectedTableName(),
                                                           editor.pane(pane).TabellaMostrata());
    if (editor.UltimoListIndex(pane) != editor.ListaTabelle(pane).ListIndex())
        return u"line %1 is selected, line %2 counts as loaded"_s.arg(editor.ListaTabelle(pane).ListIndex())
            .arg(editor.UltimoListIndex(pane));
    return {};
}

template<class Integer>
double nearest(double number) {
    return std::nearbyint(
        std::clamp(number, double{std::numeric_limits<Integer>::min()}, double{std::numeric_limits<Integer>::max()}));
}

/// Whether a field that was given the text of a cell holds this value. A cell keeps what was typed.
bool holds(FieldType type, const QString &value, const QString &cell) {
    if (value == cell)
        return true;
    const double typed = leadingNumber(cell);
    const double held = leadingNumber(value);
    switch (type) {
    case FieldType::Text:
        return cell.startsWith(value); // cut at the field's size
    case FieldType::Bool:
        return held == (typed == 0.0 ? 0.0 : 1.0);
    case FieldType::Byte:
        return held == nearest<std::uint8_t>(typed);
    case FieldType::Int:
        return held == nearest<std::int16_t>(typed);
    case FieldType::Long:
        return held == nearest<std::int32_t>(typed);
    default:
        return held == typed;
    }
}

/// The cells of a grid against those of the component's table.
QString cellsProblem(EditorContext &editor, int pane) {
    if (!editor.DtbAperto(pane) || !editor.pane(pane).realTableSelected() || editor.pane(pane).LoadFailed())
        return {};
    if (editor.pane(pane).TextsUnstored())
        return {}; // a write was refused; the cell keeps what was typed
    editor.pane(pane).makeShownTableCurrent();
    const Grid &grid = editor.Tabella(pane);
    const QirDatabase &database = editor.OggettoDtb(pane);
    const int fields = database.QirTableFieldsCount();
    if (grid.Rows() != database.QirTableRecordsCount() + 1 || grid.Cols() != std::max(2, fields + 1))
        return u"the grid has %1 x %2 cells for %3 records of %4 fields"_s.arg(grid.Rows())
            .arg(grid.Cols())
            .arg(database.QirTableRecordsCount())
            .arg(fields);
    std::vector<FieldType> types{FieldType::Text};
    for (int field = 1; field <= fields; ++field)
        types.push_back(static_cast<FieldType>(database.QIRTableFieldType(field).toInt()));
    QStringList values;
    for (int row = 1; row < grid.Rows(); ++row) {
        values.resize(fields + 1);
        database.GetQirRecord(grid.RowData(row), values);
        for (int column = 1; column <= fields; ++column)
            if (!holds(types[static_cast<std::size_t>(column)], values[column], grid.TextMatrix(row, column)))
                return u"cell (%1, %2) shows '%3' for '%4'"_s.arg(row).arg(column).arg(grid.TextMatrix(row, column),
                                                                                       values[column]);
    }
    return {};
}

} // namespace

QString selectionProblem(EditorContext &editor) {
    const Grid &left = editor.Tabella(0);
    const Grid &right = editor.Tabella(1);
    if (!left.Visible() || !right.Visible())
        return {};
    const auto agree = [](int first, int firstSize, int second, int secondSize) {
        return first == second || first >= secondSize || second >= firstSize;
    };
    if (agree(left.Row(), left.Rows(), right.Row(), right.Rows()) &&
        agree(left.Col(), left.Cols(), right.Col(), right.Cols()))
        return {};
    return u"cell (%1, %2) is current on the left, (%3, %4) on the right"_s.arg(left.Row())
        .arg(left.Col())
        .arg(right.Row())
        .arg(right.Col());
}

QString brokenInvariant(EditorContext &editor, Look look) {
    QString problem = windowProblem(editor);
    if (problem.isEmpty())
        problem = editProblem(editor);
    if (problem.isEmpty())
        problem = shownCellsProblem(editor);
    for (const int pane : {0, 1}) {
        QString ofPane = editor.DtbAperto(pane) ? openPaneProblem(editor, pane) : closedPaneProblem(editor, pane);
        if (ofPane.isEmpty() && look == Look::Thorough)
            ofPane = cellsProblem(editor, pane);
        if (problem.isEmpty() && !ofPane.isEmpty())
            problem = u"pane %1: %2"_s.arg(pane).arg(ofPane);
    }
    return problem;
}

} // namespace qir::test
