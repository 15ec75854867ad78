#pragma once

#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

namespace qir::test {

inline QString captionOf(EditorFixture &fixture, Command command) {
    return fixture.action(command).text();
}

inline void undo(EditorFixture &fixture) {
    hands::key(&fixture.window(), Qt::Key_Z, Qt::ControlModifier);
}

inline void redo(EditorFixture &fixture) {
    hands::key(&fixture.window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
}

inline TableOfTexts otherPumps() {
    TableOfTexts table = pumps();
    table.fields[0].texts = {QStringLiteral("7"), QStringLiteral("900"), QStringLiteral("60"), QStringLiteral("5")};
    table.fields[1].texts = {QStringLiteral("First"), QStringLiteral("Spare"), QStringLiteral("Third"),
                             QStringLiteral("Fourth")};
    return table;
}

/// What tests of taking steps back have in common.
class UndoWindowTest : public WindowTest {
protected:
    void openPumps(EditorFixture &fixture) const {
        openBoth(fixture, {pumps(), numbers(QStringLiteral("Zero"), {QStringLiteral("0")})},
                 {numbers(QStringLiteral("Lone"), {QStringLiteral("1"), QStringLiteral("2")}), otherPumps(),
                  numbers(QStringLiteral("Zero"), {QStringLiteral("0")})});
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(QStringLiteral("Pumps !"))));
        fixture.activate(0);
    }
};

} // namespace qir::test
