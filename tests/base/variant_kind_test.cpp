#include "base/VariantKind.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QStringList>

using qir::VariantKind;

namespace {

template<class T>
VariantKind kindOfA() {
    const VariantKind kind = qir::kindOf(QMetaType::fromType<T>());
    EXPECT_EQ(qir::kindOf(QVariant::fromValue(T())), kind) << QMetaType::fromType<T>().name();
    return kind;
}

TEST(VariantKind, TellsEachTypeThatAComponentMayGive) {
    EXPECT_EQ(qir::kindOf(QVariant()), VariantKind::Empty);
    EXPECT_EQ(kindOfA<std::nullptr_t>(), VariantKind::Empty);
    EXPECT_EQ(kindOfA<bool>(), VariantKind::Truth);
    EXPECT_EQ(kindOfA<char>(), VariantKind::Character);
    EXPECT_EQ(kindOfA<signed char>(), VariantKind::Signed);
    EXPECT_EQ(kindOfA<short>(), VariantKind::Signed);
    EXPECT_EQ(kindOfA<int>(), VariantKind::Signed);
    EXPECT_EQ(kindOfA<long>(), VariantKind::Signed);
    EXPECT_EQ(kindOfA<long long>(), VariantKind::Signed);
    EXPECT_EQ(kindOfA<unsigned char>(), VariantKind::Unsigned);
    EXPECT_EQ(kindOfA<unsigned short>(), VariantKind::Unsigned);
    EXPECT_EQ(kindOfA<unsigned>(), VariantKind::Unsigned);
    EXPECT_EQ(kindOfA<unsigned long>(), VariantKind::Unsigned);
    EXPECT_EQ(kindOfA<unsigned long long>(), VariantKind::Unsigned);
    EXPECT_EQ(kindOfA<float>(), VariantKind::Real);
    EXPECT_EQ(kindOfA<double>(), VariantKind::Real);
    EXPECT_EQ(kindOfA<QString>(), VariantKind::Text);
    EXPECT_EQ(kindOfA<QByteArray>(), VariantKind::Other);
    EXPECT_EQ(kindOfA<QStringList>(), VariantKind::Other);
    EXPECT_EQ(kindOfA<QChar>(), VariantKind::Other);
}

TEST(VariantKind, IsANumberNeitherAsTruthNorAsACharacter) {
    EXPECT_TRUE(qir::isNumber(VariantKind::Signed));
    EXPECT_TRUE(qir::isNumber(VariantKind::Unsigned));
    EXPECT_TRUE(qir::isNumber(VariantKind::Real));
    for (const auto kind :
         {VariantKind::Empty, VariantKind::Truth, VariantKind::Character, VariantKind::Text, VariantKind::Other})
        EXPECT_FALSE(qir::isNumber(kind)) << static_cast<int>(kind);
}

} // namespace
