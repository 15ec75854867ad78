#include "compare/engine/NameAlignment.h"

#include "base/Collation.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;
using qir::AlignedRow;
using qir::AlignedRowKind;
using qir::collationKey;

namespace {

QStringList mergedNames(const QStringList &left, const QStringList &right) {
    QStringList merged = left + right;
    qir::sortNames(merged);
    return qir::withoutRepeatedNames(merged);
}

std::vector<AlignedRow> alignNames(const QStringList &left, const QStringList &right) {
    return qir::alignNames(mergedNames(left, right), left, right);
}

/// The two sides as lists show them: a name, or the other side's with " ?".
std::pair<QStringList, QStringList> shown(const QStringList &left, const QStringList &right) {
    std::pair<QStringList, QStringList> lines;
    for (const AlignedRow &row : alignNames(left, right)) {
        lines.first.append(row.left >= 0 ? left[row.left] : row.name + u" ?"_s);
        lines.second.append(row.right >= 0 ? right[row.right] : row.name + u" ?"_s);
    }
    return lines;
}

TEST(AlignNames, GivesANameThatOneSideLacksALineWhereItSorts) {
    const auto [left, right] = shown({u"A"_s, u"C"_s}, {u"B"_s, u"C"_s, u"D"_s});
    EXPECT_EQ(left, QStringList({u"A"_s, u"B ?"_s, u"C"_s, u"D ?"_s}));
    EXPECT_EQ(right, QStringList({u"A ?"_s, u"B"_s, u"C"_s, u"D"_s}));
}

TEST(AlignNames, TellsTheKindOfEachRow) {
    const std::vector<AlignedRow> rows = alignNames({u"A"_s, u"B"_s}, {u"B"_s, u"C"_s});
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].kind, AlignedRowKind::LeftOnly);
    EXPECT_EQ(rows[0].right, -1);
    EXPECT_EQ(rows[1].kind, AlignedRowKind::Both);
    EXPECT_EQ(rows[1].left, 1);
    EXPECT_EQ(rows[1].right, 0);
    EXPECT_EQ(rows[2].kind, AlignedRowKind::RightOnly);
    EXPECT_EQ(rows[2].left, -1);
}

TEST(AlignNames, PutsNamesThatDifferInCaseOnlyOnOneLine) {
    const auto [left, right] = shown({u"Pumps"_s}, {u"PUMPS"_s});
    EXPECT_EQ(left, QStringList({u"Pumps"_s}));
    EXPECT_EQ(right, QStringList({u"PUMPS"_s}));
}

TEST(AlignNames, ComparesANameThatEndsInAMarkerWithoutIt) {
    const auto [left, right] = shown({u"Pumps ?"_s, u"Valves"_s}, {u"Pumps"_s, u"Valves !"_s});
    EXPECT_EQ(left, QStringList({u"Pumps ?"_s, u"Valves"_s}));
    EXPECT_EQ(right, QStringList({u"Pumps"_s, u"Valves !"_s}));
}

TEST(AlignNames, GivesTwoEmptyListsForTwoEmptyLists) {
    EXPECT_TRUE(alignNames({}, {}).empty());
}

TEST(AlignNames, GivesANameThatNeitherListHasARowOfItsOwn) {
    const std::vector<AlignedRow> rows = qir::alignNames({u"A"_s, u"B"_s}, {u"A"_s}, {});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].kind, AlignedRowKind::Neither);
    EXPECT_EQ(rows[1].name, u"B"_s);
}

TEST(AlignNames, PairsTwinsInTheirOrderAndLeavesTheRestAlone) {
    const auto [left, right] = shown({u"a"_s, u"A"_s, u"b"_s}, {u"A"_s, u"b"_s, u"B"_s});
    EXPECT_EQ(left, QStringList({u"a"_s, u"A"_s, u"b"_s, u"B ?"_s}));
    EXPECT_EQ(right, QStringList({u"A"_s, u"A ?"_s, u"b"_s, u"B"_s}));
}

TEST(SortNames, SortsByKeyAndKeepsTheOrderOfEqualKeys) {
    QStringList names{u"b"_s, u"_"_s, u"a"_s, u"A"_s, u"C"_s, u" a"_s};
    qir::sortNames(names);
    EXPECT_EQ(names, QStringList({u"a"_s, u"A"_s, u" a"_s, u"b"_s, u"C"_s, u"_"_s}));
}

TEST(WithoutRepeatedNames, KeepsNamesThatDifferInCase) {
    EXPECT_EQ(qir::withoutRepeatedNames({u"a"_s, u"a"_s, u"A"_s, u"A !"_s, u"b ?"_s, u"b"_s}),
              QStringList({u"a"_s, u"A"_s, u"b ?"_s}));
    EXPECT_EQ(qir::withoutRepeatedNames({u" !"_s, u" ?"_s}), QStringList({u" !"_s, u" ?"_s}));
    EXPECT_EQ(qir::withoutRepeatedNames({}), QStringList());
}

QString nameOf(const std::vector<int> &picks) {
    static const QStringList pieces = {u" "_s, u"?"_s,  u"!"_s,      u" ?"_s, u" !"_s, u"a"_s, u"A"_s, u"b"_s,
                                       u"ß"_s, u"SS"_s, u"\u00E9"_s, u"É"_s,  u"_"_s,  u"-"_s, u"1"_s, u"[x]"_s};
    QString name;
    for (const int pick : picks)
        name += pieces[pick];
    return name;
}

rc::Gen<QString> names() {
    return rc::gen::map(rc::gen::resize(4, rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 16))), nameOf);
}

QStringList someNames() {
    const auto picked = *rc::gen::container<std::vector<QString>>(names());
    return QStringList(picked.begin(), picked.end());
}

/// As the component holds them: no empty key, no key twice.
QStringList acceptedNames() {
    QStringList accepted;
    QStringList keys;
    for (const QString &name : someNames()) {
        const QString key = collationKey(name);
        if (key.isEmpty() || keys.contains(key))
            continue;
        keys.append(key);
        accepted.append(name);
    }
    qir::sortNames(accepted);
    return accepted;
}

RC_GTEST_PROP(AlignNamesProperty, PutsTheSameKeyOnEachLineOfBothLists, ()) {
    const QStringList left = acceptedNames();
    const QStringList right = acceptedNames();
    const auto [leftLines, rightLines] = shown(left, right);
    RC_ASSERT(leftLines.size() == rightLines.size());
    for (qsizetype i = 0; i < leftLines.size(); ++i)
        RC_ASSERT(collationKey(leftLines[i]) == collationKey(rightLines[i]));
}

RC_GTEST_PROP(AlignNamesProperty, AgreesWithInsertingEachMissingNameByItself, ()) {
    const QStringList left = acceptedNames();
    const QStringList right = acceptedNames();
    const QStringList merged = mergedNames(left, right);
    std::pair<QStringList, QStringList> expected{left, right};
    for (QStringList *lines : {&expected.first, &expected.second}) {
        for (const QString &name : merged) {
            const QString key = collationKey(name);
            const auto sameKey = [&](const QString &line) { return collationKey(line) == key; };
            if (std::ranges::any_of(*lines, sameKey))
                continue;
            qsizetype place = 0;
            while (place < lines->size() && collationKey(lines->at(place)) <= key)
                ++place;
            lines->insert(place, name + u" ?"_s);
        }
    }
    RC_ASSERT(shown(left, right) == expected);
}

RC_GTEST_PROP(AlignNamesProperty, UsesEachNameOfAnyTwoListsOnceInItsOrder, ()) {
    // Twins and empty keys included, as a foreign component might hold them.
    QStringList left = someNames();
    QStringList right = someNames();
    qir::sortNames(left);
    qir::sortNames(right);
    int nextLeft = 0;
    int nextRight = 0;
    for (const AlignedRow &row : alignNames(left, right)) {
        RC_ASSERT(row.left >= 0 || row.right >= 0);
        if (row.left >= 0)
            RC_ASSERT(row.left == nextLeft++);
        if (row.right >= 0)
            RC_ASSERT(row.right == nextRight++);
        if (row.kind == AlignedRowKind::Both)
            RC_ASSERT(collationKey(left[row.left]) == collationKey(right[row.right]));
        RC_ASSERT(row.name == (row.left >= 0 ? left[row.left] : right[row.right]));
    }
    RC_ASSERT(nextLeft == left.size());
    RC_ASSERT(nextRight == right.size());
}

} // namespace
