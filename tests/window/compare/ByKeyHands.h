#pragma once

#include "tests/window/compare/BesideWindowTest.h"

#include <QCheckBox>
#include <QTableView>

namespace qir::test {

/// Tags in another order: P-1 is gone on the right, P-4 is new there, P-2 has another speed.
inline TableOfTexts leftPumps() {
    return {QStringLiteral("Pumps"),
            {{QStringLiteral("Tag"),
              FieldType::Text,
              {QStringLiteral("P-1"), QStringLiteral("P-2"), QStringLiteral("P-3")},
              20},
             {QStringLiteral("Speed"),
              FieldType::Long,
              {QStringLiteral("1500"), QStringLiteral("700"), QStringLiteral("900")}}}};
}

inline TableOfTexts rightPumps() {
    return {QStringLiteral("Pumps"),
            {{QStringLiteral("Tag"),
              FieldType::Text,
              {QStringLiteral("P-2"), QStringLiteral("P-3"), QStringLiteral("P-4")},
              20},
             {QStringLiteral("Speed"),
              FieldType::Long,
              {QStringLiteral("800"), QStringLiteral("900"), QStringLiteral("400")}}}};
}

/// The window of differences by key beside the real main window.
class ByKeyWindowTest : public BesideWindowTest {
protected:
    ByKeyWindowTest()
        : BesideWindowTest(QStringLiteral("differencesByKey")) {}

    void open(EditorFixture &fixture, const TableOfTexts &left = leftPumps(),
              const TableOfTexts &right = rightPumps()) {
        fixture.dialogs().allow(QStringLiteral("differencesByKey"));
        openBoth(fixture, {left}, {right});
        fixture.choose(Command::DifferencesByKeyMenu);
        QVERIFY(window(fixture)->isVisible());
    }
    QAbstractItemModel &changes(EditorFixture &fixture) const {
        return *control<QTableView>(fixture, QStringLiteral("keyedChanges")).model();
    }
    QList<QStringList> rows(EditorFixture &fixture) const { return textsOf(changes(fixture)); }
    QString status(EditorFixture &fixture) const { return textOf(fixture, QStringLiteral("keyedStatus")); }
    /// Clicks the box before a line of a list, or of the changes.
    void tick(EditorFixture &fixture, const QString &view, int row) const {
        auto &list = control<QAbstractItemView>(fixture, view);
        const QModelIndex index = list.model()->index(row, 0);
        list.scrollTo(index);
        const QRect place = list.visualRect(index);
        hands::click(list.viewport(), Qt::LeftButton, {}, QPoint(place.left() + 10, place.center().y()));
    }
};

} // namespace qir::test
