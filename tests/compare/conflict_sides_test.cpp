#include "compare/conflicts/TakenSide.h"
#include "tests/model/Content.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

Conflict removal(const QVariantList &ours) {
    Conflict conflict;
    conflict.what = Conflict::What::Record;
    conflict.table = u"T"_s;
    conflict.ours = ours;
    return conflict;
}

QStringList tagsOf(const QirDatabase &database) {
    database.QIRTableRecordSource(u"T"_s);
    QStringList tags;
    for (int record = 1; record <= database.QirTableRecordsCount(); ++record) {
        database.setQIRTableRecordsPointerOut(record);
        tags += database.QIRTableRecordSetByIndex(1).toString();
    }
    return tags;
}

TEST(ConflictSidesTest, ARecordThatIsNamedTwiceTakesNoNeighbourWithIt) {
    const QirDatabase database = test::makeDatabase({{"T", {true}, {{"a"}, {"b"}, {"c"}, {"d"}}}});
    const Conflict conflict = removal({u"b"_s});
    ConflictStanding second;
    second.record = 2;
    ConflictStanding last;
    last.record = 4;
    writeSides(database, {{&conflict, second, ConflictSide::Theirs},
                          {&conflict, last, ConflictSide::Theirs},
                          {&conflict, second, ConflictSide::Theirs}});
    EXPECT_EQ(tagsOf(database), (QStringList{u"a"_s, u"c"_s}));
}

} // namespace

} // namespace qir
