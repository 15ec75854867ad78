#include "compare/DifferingTables.h"

#include "base/Collation.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QAbstractItemModel>

namespace qir {

using namespace Qt::StringLiterals;

void DifferingTables::watchLists() {
    for (const int pane : {0, 1}) {
        const QAbstractItemModel *lines = m_editor.ListaTabelle(pane).model();
        connect(lines, &QAbstractItemModel::dataChanged, this, &DifferingTables::outdate);
        connect(lines, &QAbstractItemModel::rowsInserted, this, &DifferingTables::outdate);
        // A refilled list is marked anew, by what the databases hold.
        connect(lines, &QAbstractItemModel::modelReset, this, [this] {
            m_recordsOnOneSide.clear();
            outdate();
        });
    }
}

void DifferingTables::outdate() {
    m_outdated = true;
    Q_EMIT changed();
}

void DifferingTables::follow() {
    if (!m_editor.gridsShowSameTable())
        return;
    const bool oneSided = (m_editor.Tabella(0).Rows() > 1) != (m_editor.Tabella(1).Rows() > 1);
    const QString key = collationKey(m_editor.pane(0).TabellaMostrata());
    if (oneSided == m_recordsOnOneSide.contains(key))
        return;
    if (oneSided)
        m_recordsOnOneSide.insert(key, true);
    else
        m_recordsOnOneSide.remove(key);
    outdate();
}

bool DifferingTables::linedUp() const {
    if (m_outdated)
        update();
    return m_linedUp && m_editor.DtbAperto(0) && m_editor.DtbAperto(1);
}

int DifferingTables::count() const {
    return linedUp() ? m_count : 0;
}

Standing DifferingTables::standing(int line) const {
    if (!linedUp())
        return Standing::Unknown;
    const ListBox &left = m_editor.ListaTabelle(0);
    const ListBox &right = m_editor.ListaTabelle(1);
    if (left.ItemData(line) == 0)
        return right.ItemData(line) == 0 ? Standing::Unknown : Standing::OnlyRight;
    if (right.ItemData(line) == 0)
        return Standing::OnlyLeft;
    const bool marked = left.List(line).endsWith(u" !"_s);
    return marked || (!m_recordsOnOneSide.isEmpty() && m_recordsOnOneSide.contains(collationKey(left.List(line))))
               ? Standing::Differ
               : Standing::Equal;
}

void DifferingTables::update() const {
    m_outdated = false;
    const ListBox &left = m_editor.ListaTabelle(0);
    const ListBox &right = m_editor.ListaTabelle(1);
    m_linedUp = left.ListCount() == right.ListCount();
    for (int line = 0; m_linedUp && line < left.ListCount(); ++line)
        m_linedUp = collationKey(left.List(line)) == collationKey(right.List(line));
    m_count = 0;
    for (int line = 0; m_linedUp && line < left.ListCount(); ++line)
        m_count += standing(line) == Standing::Differ ? 1 : 0;
}

} // namespace qir
