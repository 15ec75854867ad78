#include "view/ColumnFit.h"

#include "app/shared/Funzioni.h"

#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

namespace qir {

namespace {

constexpr int fixedColumnWidth = 300;
constexpr int leastFieldWidth = 100;

} // namespace

void addColumnFit(EditorContext &editor) {
    CommandTable &commands = editor.commands();
    commands.add(Command::ColumnSizeAdjust, QObject::tr("&Fit Columns"), [&editor] { ColumnSizeAdjust_Click(editor); },
                 {.needs = Needs::Database});
}

void ColumnSizeAdjust_Click(EditorContext &editor) {
    const int pane = editor.IndexAttivo();
    if (pane >= 0 && editor.pane(pane).realTableSelected())
        SizeAdjust(editor, editor.Tabella(pane));
}

void SizeAdjust(EditorContext &editor, Grid &grid) {
    yieldToMessages();
    for (int c = 1; c < grid.Cols(); ++c)
        if (grid.ColWidth(c) < leastFieldWidth)
            grid.setColWidth(c, leastFieldWidth); // a column of width 0 would not be measured
    MisuraColonne(*editor.controls().AutoSizeLabelTwips, grid, 0);
    grid.setColWidth(0, fixedColumnWidth);
}

} // namespace qir
