#pragma once

#include "tests/support/Hands.h"
#include "tests/window/EditorFixture.h"

#include <QMenu>
#include <QMenuBar>

namespace qir::test {

/// Presses the right button on a line of a pane's table list, as a person who wants its pop-up.
inline void pressRight(EditorFixture &fixture, int pane, int line) {
    hands::click(fixture.list(pane).viewport(), Qt::RightButton, Qt::NoModifier, fixture.lineCentre(pane, line));
}

/// The object names of the entries that an open pop-up shows; empty when it is not open.
inline QStringList shownEntries(const QMenu &menu) {
    QStringList names;
    if (!menu.isVisible())
        return names;
    for (const QAction *action : menu.actions())
        if (action->isVisible() && !action->isSeparator())
            names.append(action->objectName());
    return names;
}

/// Clicks an entry of an open pop-up.
inline void chooseFromPopup(QMenu &menu, QAction &action) {
    hands::click(&menu, Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(&action).center());
}

/// Opens a menu of the bar with the mouse and clicks an entry.
inline void chooseFromBar(EditorFixture &fixture, Menu menu, Command command) {
    QMenuBar *bar = fixture.window().menuBar();
    QMenu &opened = fixture.menu(menu);
    hands::click(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(opened.menuAction()).center());
    QVERIFY2(opened.isVisible(), qPrintable(opened.objectName()));
    chooseFromPopup(opened, fixture.action(command));
}

} // namespace qir::test
