#include "platform/controls/RowsView.h"

#include <QHeaderView>
#include <QTableView>

namespace qir {

namespace {

constexpr int rowPadding = 4; // pixels beside a line's height

} // namespace

void makeRowsView(QTableView &view, const QString &accessibleName) {
    view.setAccessibleName(accessibleName);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setTabKeyNavigation(false);
    view.setWordWrap(false);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + rowPadding);
    view.horizontalHeader()->setStretchLastSection(true);
}

} // namespace qir
