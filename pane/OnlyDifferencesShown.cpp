#include "pane/OnlyDifferencesShown.h"

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"

#include <QCoreApplication>

namespace qir {

QString onlyDifferencesReason() {
    return QCoreApplication::translate("OnlyDifferences",
                                       "Not while only differences are shown: turn off Mode > Only Differences first");
}

bool refusedOnlyDifferences(EditorContext &editor, int pane) {
    if (pane < 0 || editor.Tabella(pane).showsAll())
        return false;
    editor.status().showMessage(onlyDifferencesReason());
    return true;
}

} // namespace qir
