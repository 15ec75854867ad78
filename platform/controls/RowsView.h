#pragma once

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QModelIndex;
class QTableView;
QT_END_NAMESPACE

namespace qir {

/// Makes a view one that lists things to be chosen: whole rows, no header beside them, one line each, nothing edited.
void makeRowsView(QTableView &view, const QString &accessibleName);
/// Calls `choose` with the row that is chosen there, by a double click or with Return or Enter.
void onRowChosen(QTableView &view, const std::function<void(const QModelIndex &index)> &choose);

} // namespace qir
