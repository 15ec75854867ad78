#include "platform/controls/RowsView.h"

#include <QHeaderView>
#include <QShortcut>
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

void onRowChosen(QTableView &view, const std::function<void(const QModelIndex &index)> &choose) {
    QObject::connect(&view, &QTableView::doubleClicked, &view, choose);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        const auto *shortcut = new QShortcut(key, &view, nullptr, nullptr, Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, &view, [&view, choose] {
            if (view.currentIndex().isValid())
                choose(view.currentIndex());
        });
    }
}

} // namespace qir
