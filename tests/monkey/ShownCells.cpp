#include "tests/monkey/ShownCells.h"

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"

#include <QAction>

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

QString shownCellsProblem(EditorContext &editor) {
    const Grid &left = editor.Tabella(0);
    const Grid &right = editor.Tabella(1);
    if (left.showsAll() && right.showsAll())
        return {};
    if (left.showsAll() != right.showsAll() || !editor.controls().action(Command::OnlyDifferencesMenu).isChecked())
        return u"one grid shows a part of its table, the other all of its own"_s;
    for (const Grid *grid : {&left, &right}) {
        if (!grid->shows(grid->Row(), grid->Col()) && grid->shownRowCount() > 0)
            return u"the current cell (%1, %2) is not shown"_s.arg(grid->Row()).arg(grid->Col());
        if (grid->model()->rowCount() != grid->shownRowCount())
            return u"the view has %1 rows of %2"_s.arg(grid->model()->rowCount()).arg(grid->shownRowCount());
    }
    // Line by line both sides show the same record, as far as they have it.
    const int lines = std::min(left.shownRowCount(), right.shownRowCount());
    for (int line = 0; line < lines; ++line) {
        const QVariant number = left.model()->headerData(line, Qt::Vertical);
        if (number != right.model()->headerData(line, Qt::Vertical))
            return u"line %1 shows record %2 beside another"_s.arg(line).arg(number.toInt());
    }
    const std::size_t missing = editor.CelleDiverse().rowCount();
    if (missing > static_cast<std::size_t>(std::max(left.shownRowCount(), right.shownRowCount())))
        return u"%1 records differ, fewer are shown"_s.arg(missing);
    return {};
}

} // namespace qir::test
