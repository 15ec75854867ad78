#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QTableView;
QT_END_NAMESPACE

namespace qir {

/// Makes a view one that lists things to be chosen: whole rows, no header beside them, one line each, nothing edited.
void makeRowsView(QTableView &view, const QString &accessibleName);

} // namespace qir
