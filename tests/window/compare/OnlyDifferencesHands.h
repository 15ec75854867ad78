#pragma once

#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

namespace qir::test {

/// What tests of Mode > Only Differences have in common.
class OnlyDifferencesWindowTest : public WindowTest {
protected:
    /// Table A with six records of four fields: records 2 and 5 differ, in the fields 2 and 4.
    void open(EditorFixture &fixture) const {
        const TableOfTexts other = counted(QStringLiteral("B"), 3, 2);
        openBoth(fixture, {counted(QStringLiteral("A"), 6, 4), other},
                 {changed(counted(QStringLiteral("A"), 6, 4), {{2, 4}, {5, 2}}), other});
    }
    /// The texts that the grid's view has, row by row, each behind the number that its header tells.
    static QList<QStringList> view(EditorFixture &fixture, int pane) {
        const QAbstractItemModel *model = fixture.grid(pane).model();
        QList<QStringList> rows = textsOf(*model);
        for (int row = 0; row < rows.size(); ++row)
            rows[row].prepend(model->headerData(row, Qt::Vertical).toString());
        return rows;
    }
    static QStringList shownFields(EditorFixture &fixture, int pane) {
        const QAbstractItemModel *model = fixture.grid(pane).model();
        QStringList names;
        for (int column = 0; column < model->columnCount(); ++column)
            names.append(model->headerData(column, Qt::Horizontal).toString().section(u' ', 0, 0));
        return names;
    }
};

} // namespace qir::test
