#pragma once

#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

namespace qir::test {

/// A control of the find bar.
template<class Control>
Control &inBar(EditorFixture &fixture, const QString &name) {
    return *fixture.window().findChild<Control *>(name);
}

inline void openBar(EditorFixture &fixture, const QString &text) {
    hands::key(&fixture.window(), Qt::Key_F, Qt::ControlModifier);
    hands::type(&inBar<QLineEdit>(fixture, QStringLiteral("findText")), text);
}

inline QString countOf(EditorFixture &fixture) {
    return inBar<QLabel>(fixture, QStringLiteral("findCount")).text();
}

inline void check(EditorFixture &fixture, const QString &name) {
    hands::click(&inBar<QAbstractButton>(fixture, name), Qt::LeftButton, {}, QPoint(8, 8));
}

/// The list of hits, row by row.
inline QStringList hitsOf(EditorFixture &fixture) {
    QStringList rows;
    for (const QStringList &cells : textsOf(*inBar<QTableView>(fixture, QStringLiteral("findHits")).model()))
        rows.append(cells.join(u'|'));
    return rows;
}

} // namespace qir::test
