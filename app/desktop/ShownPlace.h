#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"

namespace qir {

/// The line of a list whose table has this collation key, -1 when there is none.
int lineOfKey(const ListBox &list, const QString &key);

/// The table, the cells and the scroll place that a pane shows, to be found again when its file was loaded anew.
class ShownPlace {
public:
    ShownPlace(EditorContext &editor, int pane);

    /// Goes there, as far as it is there still.
    void showAgain() const;

private:
    EditorContext &m_editor;
    int m_pane;
    QString m_key; // of the table; "" for none
    GridSelection m_selection;
    GridPlace m_place;
};

} // namespace qir
