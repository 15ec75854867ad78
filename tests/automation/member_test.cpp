#include "platform/automation/AutomationError.h"
#include "platform/automation/Member.h"
#include "tests/automation/Sample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;

namespace qir {

namespace {

struct MemberTest : testing::Test {
    Sample *sample = new Sample;
    AutomationObject object{sample};
};

template<class Call>
std::string errorOf(Call call) {
    try {
        call();
    } catch (const AutomationError &error) {
        return error.what();
    }
    return "no error";
}

TEST_F(MemberTest, CallsAMethodByName) {
    const Method<QString(QString, int)> join{"Join"};
    EXPECT_EQ(join(object, u"P"_s, 4), u"P4"_s);
}

TEST_F(MemberTest, CallsASlotByName) {
    const Method<int()> slot{"Slot"};
    EXPECT_EQ(slot(object), 11);
}

TEST_F(MemberTest, ASignalIsNoMember) {
    const Method<void()> signal{"Signal"};
    EXPECT_FALSE(signal.isIn(object));
    EXPECT_THROW(signal(object), AutomationError);
}

TEST_F(MemberTest, ReadsAndWritesAProperty) {
    const Property<bool> flag{"Flag"};
    EXPECT_FALSE(flag.read(object));
    flag.write(object, true);
    EXPECT_TRUE(flag.read(object));
    EXPECT_TRUE(sample->flag);
}

TEST_F(MemberTest, ReadsAndWritesAnIndexedPropertyThroughTwoInvokablesOfOneName) {
    const Method<QVariant(int)> read{"Indexed"};
    const Method<void(int, QVariant)> write{"Indexed"};
    write(object, 3, 2.5);
    EXPECT_EQ(read(object, 3), QVariant(2.5));
    QVariant kept = u"old"_s;
    read.read(object, kept, 3);
    EXPECT_EQ(kept, QVariant(2.5));
}

TEST_F(MemberTest, VariantParametersTakeAnyType) {
    const Method<QString(QString, int)> join{"LooseJoin"};
    EXPECT_EQ(join(object, u"P"_s, 4), u"P4"_s);
    EXPECT_EQ(sample->last.at(0).typeId(), QMetaType::QString);
    EXPECT_EQ(sample->last.at(1).typeId(), QMetaType::Int);
}

TEST_F(MemberTest, FillsATextArrayByReference) {
    const Method<void(int, QStringList &)> fill{"Fill"};
    QStringList values;
    fill(object, 9, values);
    EXPECT_EQ(values, (QStringList{QString(), u"9"_s}));
}

TEST_F(MemberTest, ATextArrayTakenByValueIsTheWrongShape) {
    const Method<void(int, QStringList &)> fill{"FillByValue"};
    QStringList values;
    EXPECT_THAT(errorOf([&] { fill(object, 9, values); }),
                AllOf(HasSubstr("Sample"), HasSubstr("FillByValue(int, QStringList&)"),
                      HasSubstr("void FillByValue(int,QStringList)")));
}

TEST_F(MemberTest, ATrailingDefaultArgumentMayBeLeftOut) {
    const Method<void(QString, int)> brief{"Default"};
    const Method<void(QString, int, double)> full{"Default"};
    brief(object, u"Name"_s, 10);
    EXPECT_EQ(sample->last, (QVariantList{u"Name"_s, 10, 50.0}));
    full(object, u"Name"_s, 10, 20.0);
    EXPECT_EQ(sample->last, (QVariantList{u"Name"_s, 10, 20.0}));
}

TEST_F(MemberTest, AResultThatNobodyAskedForMayBeAnything) {
    const Method<void()> list{"List"};
    EXPECT_NO_THROW(list(object));
}

TEST_F(MemberTest, TakesTheClosestOfSeveralShapes) {
    EXPECT_EQ(Method<int(int)>{"Which"}(object, 5), 1);
    EXPECT_EQ(Method<int(QString)>{"Which"}(object, u"5"_s), 2);
    EXPECT_EQ(Method<int(QVariant)>{"Which"}(object, 5), 3);
}

TEST_F(MemberTest, WhatADerivedClassRedefinesComesFirst) {
    const AutomationObject derived(new Derived);
    EXPECT_EQ(Method<int()>{"Version"}(derived), 2);
    EXPECT_EQ(Method<QString(int)>{"Which"}(derived, 5), u"derived"_s);
}

TEST_F(MemberTest, NumbersConvertWhereTheComponentHasAnotherKind) {
    EXPECT_EQ(Method<double(double)>{"Whole"}(object, 6.0), 6.0);
    EXPECT_EQ(Method<int(double)>{"Half"}(object, 8.0), 4);
    EXPECT_EQ(Method<int(int)>{"Small"}(object, 255), 255);
    EXPECT_EQ(Property<double>{"Narrow"}.read(object), 0.0);
    Property<double>{"Narrow"}.write(object, 12.0);
    EXPECT_EQ(sample->narrow, 12);
    sample->huge = 5;
    EXPECT_EQ(Property<int>{"Huge"}.read(object), 5);
}

TEST_F(MemberTest, HalvesRoundToEven) {
    EXPECT_EQ(Method<int(int)>{"Half"}(object, 5), 2);
    EXPECT_EQ(Method<int(int)>{"Half"}(object, 7), 4);
}

TEST_F(MemberTest, TruthIsMinusOneAsANumberAndAnyNumberButZeroIsTrue) {
    Property<bool>{"Narrow"}.write(object, true);
    EXPECT_EQ(sample->narrow, -1);
    EXPECT_TRUE(Property<bool>{"Narrow"}.read(object));
    sample->wide = 0.25;
    EXPECT_TRUE(Property<bool>{"Wide"}.read(object));
    sample->wide = 0;
    EXPECT_FALSE(Property<bool>{"Wide"}.read(object));
    EXPECT_EQ(Method<int()>{"IsTrue"}(object), -1);
}

TEST_F(MemberTest, AResultInAVariantIsTakenByWhatItHolds) {
    const Method<int(QVariant)> number{"Echo"};
    const Method<bool(QVariant)> truth{"Echo"};
    const Method<QString(QVariant)> text{"Echo"};
    EXPECT_EQ(number(object, QVariant::fromValue(static_cast<qlonglong>(3))), 3);
    EXPECT_EQ(number(object, 3.0), 3);
    EXPECT_TRUE(truth(object, -1));
    EXPECT_EQ(text(object, u"Öl"_s), u"Öl"_s);
    sample->loose = true;
    EXPECT_TRUE(Property<bool>{"Loose"}.read(object));
}

TEST_F(MemberTest, AWantedVariantTakesATypedResult) {
    EXPECT_EQ(Property<QVariant>{"Count"}.read(object), QVariant(7));
    EXPECT_EQ((Method<QVariant(QString, int)>{"Join"}(object, u"P"_s, 1)), QVariant(u"P1"_s));
}

TEST_F(MemberTest, APropertyOfTypeVariantTakesAnyValue) {
    Property<int>{"Loose"}.write(object, 5);
    EXPECT_EQ(sample->loose, QVariant(5));
}

TEST_F(MemberTest, NothingWhereAValueIsNeededIsAnError) {
    EXPECT_THAT(errorOf([&] { Method<QString()>{"Nothing"}(object); }),
                AllOf(HasSubstr("Sample"), HasSubstr("Nothing()"), HasSubstr("nothing where QString is needed")));
    EXPECT_THROW(Method<int()>{"Nothing"}(object), AutomationError);
    EXPECT_EQ(Method<QVariant()>{"Nothing"}(object), QVariant());
}

TEST_F(MemberTest, ATextWhereANumberIsNeededIsAnError) {
    EXPECT_THAT(errorOf([&] { Method<int(QVariant)>{"Echo"}(object, u"3"_s); }),
                HasSubstr("gave back QString where int is needed"));
}

TEST_F(MemberTest, ANumberOutOfRangeIsAnError) {
    EXPECT_THROW(Method<int(QVariant)>{"Echo"}(object, 3e9), AutomationError);
    EXPECT_THROW(Method<int(QVariant)>{"Echo"}(object, std::numeric_limits<double>::quiet_NaN()), AutomationError);
    EXPECT_EQ(Method<int(QVariant)>{"Echo"}(object, 2147483647.0), 2147483647);
    EXPECT_EQ(Method<int(QVariant)>{"Echo"}(object, -2147483648.0), std::numeric_limits<int>::min());
    EXPECT_THAT(errorOf([&] { Method<int(int)>{"Small"}(object, 256); }),
                AllOf(HasSubstr("Small(int)"), HasSubstr("argument 1")));
    EXPECT_THROW(Property<double>{"Narrow"}.write(object, 1e10), AutomationError);
    EXPECT_EQ(sample->narrow, 0);
}

TEST_F(MemberTest, AMissingMemberIsAnErrorWithClassMemberAndArguments) {
    EXPECT_THAT(errorOf([&] { Method<bool(QString, double)>{"Absent"}(object, u""_s, 1.0); }),
                AllOf(HasSubstr("Sample"), HasSubstr("Absent(QString, double)")));
    EXPECT_THAT(errorOf([&] { Property<int>{"Absent"}.read(object); }),
                AllOf(HasSubstr("Sample"), HasSubstr("Absent")));
    EXPECT_THAT(errorOf([&] { Property<int>{"Absent"}.write(object, 1); }),
                AllOf(HasSubstr("Sample"), HasSubstr("Absent = int")));
}

TEST_F(MemberTest, AWrongNumberOfArgumentsIsAnErrorThatNamesWhatIsThere) {
    EXPECT_THAT(errorOf([&] { Method<QString(QString)>{"Join"}(object, u""_s); }),
                AllOf(HasSubstr("Sample"), HasSubstr("Join(QString)"), HasSubstr("QString Join(QString,int)")));
}

TEST_F(MemberTest, AWrongArgumentTypeIsAnError) {
    EXPECT_THROW((Method<QString(int, int)>{"Join"}(object, 1, 2)), AutomationError);
    EXPECT_THROW((Method<QString(QString, QVariant)>{"Join"}(object, u""_s, 2)), AutomationError);
}

TEST_F(MemberTest, AWrongResultTypeIsAnError) {
    EXPECT_THROW(Method<QString()>{"List"}(object), AutomationError);
    EXPECT_THROW(Method<QVariant()>{"List"}(object), AutomationError);
    EXPECT_THROW(Property<bool>{"Words"}.read(object), AutomationError);
}

TEST_F(MemberTest, AReadOnlyPropertyRefusesToBeWritten) {
    EXPECT_THAT(errorOf([&] { Property<int>{"Count"}.write(object, 1); }), HasSubstr("read-only property Count"));
}

TEST_F(MemberTest, AMethodIsNoPropertyAndAPropertyNoMethod) {
    EXPECT_THROW(Property<int>{"Slot"}.read(object), AutomationError);
    EXPECT_THROW(Method<int()>{"Count"}(object), AutomationError);
}

TEST_F(MemberTest, WhatTheComponentThrowsPassesThroughUntouched) {
    EXPECT_THAT([&] { Method<void()>{"Fail"}(object); }, testing::ThrowsMessage<std::out_of_range>("no such pump"));
}

TEST_F(MemberTest, AnEmptyOwnerIsAnErrorThatNamesTheMember) {
    const AutomationObject empty;
    EXPECT_THAT(errorOf([&] { Method<void(int)>{"RemoveTable"}(empty, 1); }), HasSubstr("RemoveTable(int)"));
    EXPECT_FALSE(Method<void()>{"RemoveTable"}.isIn(empty));
}

TEST_F(MemberTest, KnowsWhetherAMemberIsThereWithoutCallingIt) {
    EXPECT_TRUE(Method<void()>{"Fail"}.isIn(object));
    EXPECT_TRUE(Method<void(QString)>{"Fail"}.isIn(object)) << "a wrong shape is there, too: calling it is the error";
    EXPECT_FALSE(Method<void()>{"Absent"}.isIn(object));
}

TEST_F(MemberTest, EachMemberIsLookedUpOnceForAllObjectsOfTheClass) {
    const Method<QString(QString, int)> join{"Join"};
    const Property<int> count{"Count"};
    join(object, u"P"_s, 1);
    count.read(object);
    const std::size_t before = object.lookUps();
    for (int i = 0; i < 1000; ++i) {
        join(object, u"P"_s, i);
        count.read(object);
    }
    const AutomationObject second(new Sample);
    join(second, u"P"_s, 1);
    EXPECT_EQ(object.lookUps(), before);
    EXPECT_EQ(second.lookUps(), before);
    Method<int()>{"Slot"}(object);
    EXPECT_EQ(object.lookUps(), before + 1);
}

TEST_F(MemberTest, WhetherAMemberIsThereIsLookedUpOnceToo) {
    const Method<void()> present{"Fail"};
    const Method<void()> absent{"Absent"};
    EXPECT_TRUE(present.isIn(object));
    EXPECT_FALSE(absent.isIn(object));
    const std::size_t before = object.lookUps();
    const AutomationObject second(new Sample);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(present.isIn(second));
        EXPECT_FALSE(absent.isIn(second));
    }
    EXPECT_EQ(object.lookUps(), before);
}

TEST_F(MemberTest, OneMemberServesSeveralClasses) {
    const Method<int()> version{"Version"};
    const AutomationObject derived(new Derived);
    EXPECT_EQ(version(object), 1);
    EXPECT_EQ(version(derived), 2);
    EXPECT_EQ(version(object), 1);
}

TEST(AutomationObjectTest, ReleaseDestroysTheObjectThereAndThen) {
    bool destroyed = false;
    auto *sample = new Sample;
    sample->destroyedFlag = &destroyed;
    AutomationObject object(sample);
    EXPECT_FALSE(object.isEmpty());
    object.release();
    EXPECT_TRUE(destroyed);
    EXPECT_TRUE(object.isEmpty());
    EXPECT_EQ(object.object(), nullptr);
    object.release();
}

TEST(AutomationObjectTest, MovingLeavesAnEmptyOwnerAndReleasesWhatIsReplaced) {
    bool firstDestroyed = false;
    bool secondDestroyed = false;
    auto *first = new Sample;
    first->destroyedFlag = &firstDestroyed;
    auto *second = new Sample;
    second->destroyedFlag = &secondDestroyed;
    {
        AutomationObject owner(first);
        AutomationObject other(second);
        owner = std::move(other);
        EXPECT_TRUE(firstDestroyed);
        EXPECT_FALSE(secondDestroyed);
        EXPECT_EQ(owner.object(), second);
        EXPECT_TRUE(other.isEmpty()); // NOLINT(bugprone-use-after-move): that is what is asked
    }
    EXPECT_TRUE(secondDestroyed);
}

} // namespace

} // namespace qir
