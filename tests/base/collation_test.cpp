#include "base/Collation.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using qir::collationKey;

namespace {

/// What happens to a name on its way back from a list line.
QString trimmedBlanks(const QString &text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    return text.mid(first, last - first);
}

QString withoutMarkers(QString text) {
    while (text.contains(u" ?"_s))
        text.remove(u" ?"_s);
    while (text.contains(u" !"_s))
        text.remove(u" !"_s);
    return text;
}

QString withoutMarkersOnce(QString text) {
    return text.remove(u" ?"_s).remove(u" !"_s);
}

QString nameOf(const std::vector<int> &picks) {
    static const std::vector<QString> pieces = {u" "_s, u"?"_s, u"!"_s,      u" ?"_s, u" !"_s,         u"a"_s,
                                                u"B"_s, u"ß"_s, u"\u00E9"_s, u"."_s,  u"\U00010428"_s, u"1"_s};
    QString name;
    for (const int pick : picks)
        name += pieces[static_cast<std::size_t>(pick)];
    return name;
}

rc::Gen<std::vector<int>> picks() {
    return rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 12));
}

TEST(CollationKey, IgnoresCaseAndSurroundingBlanks) {
    EXPECT_EQ(collationKey(u"  Pumps "), u"PUMPS"_s);
    EXPECT_EQ(collationKey(u"pumps"), collationKey(u"PUMPS"));
    EXPECT_EQ(collationKey(u"two words"), u"TWO WORDS"_s);
    EXPECT_EQ(collationKey(u""), u""_s);
    EXPECT_EQ(collationKey(u"   "), u""_s);
}

TEST(CollationKey, LeavesOutEveryMarker) {
    EXPECT_EQ(collationKey(u"Pumps ?"), u"PUMPS"_s);
    EXPECT_EQ(collationKey(u"Pumps !"), u"PUMPS"_s);
    EXPECT_EQ(collationKey(u"Pumps ? !"), u"PUMPS"_s);
    EXPECT_EQ(collationKey(u"a ?b !c"), u"ABC"_s);
}

TEST(CollationKey, LeavesOutMarkersThatARemovalBringsTogether) {
    EXPECT_EQ(collationKey(u"a  ??"), u"A"_s);
    EXPECT_EQ(collationKey(u"a  !?"), u"A"_s);
    EXPECT_EQ(collationKey(u"a   ?!!b"), u"AB"_s);
}

TEST(CollationKey, KeepsAMarkWithoutABlankBeforeIt) {
    EXPECT_EQ(collationKey(u"Why?"), u"WHY?"_s);
    EXPECT_EQ(collationKey(u"!now"), u"!NOW"_s);
    EXPECT_EQ(collationKey(u"? a"), u"? A"_s);
}

TEST(CollationKey, UppersByUnicodeWhateverTheLocale) {
    EXPECT_EQ(collationKey(u"straße"), u"STRASSE"_s);
    EXPECT_EQ(collationKey(u"élan"), u"ÉLAN"_s);
    EXPECT_EQ(collationKey(u"i"), u"I"_s);
    EXPECT_EQ(collationKey(u"\U00010428"), u"\U00010400"_s);
}

TEST(CollationKey, OrdersNamesByCodeUnit) {
    EXPECT_LT(collationKey(u"a"), collationKey(u"B"));
    EXPECT_EQ(collationKey(u"a"), collationKey(u"A "));
    EXPECT_LT(collationKey(u"Z"), collationKey(u"_"));
    EXPECT_LT(collationKey(u"z"), collationKey(u"é"));
    EXPECT_LT(collationKey(u"\U00010000"), collationKey(u"\uFF21")); // units, not code points
}

RC_GTEST_PROP(CollationKeyProperty, StaysTheSameOnTheWayThroughAListLine, ()) {
    const QString name = nameOf(*picks());
    const QString key = collationKey(name);
    for (const QString &marker : {u""_s, u" ?"_s, u" !"_s, u" ? !"_s}) {
        const QString line = name + marker;
        RC_ASSERT(collationKey(line) == key || name.trimmed().isEmpty());
        RC_ASSERT(collationKey(withoutMarkers(trimmedBlanks(line))) == key || name.trimmed().isEmpty());
        RC_ASSERT(collationKey(withoutMarkersOnce(trimmedBlanks(line))) == key || name.trimmed().isEmpty());
        RC_ASSERT(collationKey(trimmedBlanks(withoutMarkers(trimmedBlanks(line)))) == key || name.trimmed().isEmpty());
    }
    RC_ASSERT(collationKey(u"  "_s + name + u" "_s) == key);
    RC_ASSERT(collationKey(name.trimmed()) == key);
}

RC_GTEST_PROP(CollationKeyProperty, HoldsNoMarkerAndNoSurroundingBlank, ()) {
    const QString key = collationKey(nameOf(*picks()));
    RC_ASSERT(!key.contains(u" ?"_s));
    RC_ASSERT(!key.contains(u" !"_s));
    RC_ASSERT(key == key.trimmed());
}

} // namespace
