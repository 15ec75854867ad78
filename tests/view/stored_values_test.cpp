#include "view/StoredValues.h"

#include "base/columns/BlockOrder.h"
#include "base/columns/ColumnBuilder.h"
#include "db/FieldTypes.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int longType = static_cast<int>(FieldType::Long);
constexpr int textType = static_cast<int>(FieldType::Text);

CellStretch ownTexts(std::size_t count, const std::function<QString(std::size_t)> &text) {
    PackedTexts texts;
    for (std::size_t i = 0; i < count; ++i)
        texts.append(text(i));
    return CellStretch(std::move(texts));
}

TEST(StoredValues, AreTheLeadingNumbersOrTheTexts) {
    const CellStretch stretch = ownTexts(3, [](std::size_t i) { return u"%1 bar"_s.arg(i); });
    const ColumnBlock numbers = storedValues(stretch, 1, 2, longType);
    ASSERT_EQ(numbers.count(), 2);
    EXPECT_EQ(numbers.number(0), 1);
    EXPECT_EQ(storedValues(stretch, 2, 1, textType).text(0), u"2 bar"_s);
    EXPECT_THROW((void)storedValues(stretch, 0, 1, 5), std::invalid_argument);
}

TEST(StoredValues, OfABlockOfTheTypeAreTheBlockItself) {
    ColumnBuilder builder(ColumnType::Long);
    builder.add(7);
    builder.add(8);
    const ColumnBlock block = builder.take();
    EXPECT_TRUE(storedValues(CellStretch(block), 0, 2, longType).sharesMemoryWith(block));
    EXPECT_EQ(storedValues(CellStretch(block), 1, 1, longType).number(0), 8);
}

TEST(StoredValues, OfManyTextsAreNoMoreThanTheUsualBlockHas) {
    const CellStretch stretch = ownTexts(70000, [](std::size_t i) { return QString::number(i); });
    EXPECT_EQ(storedValues(stretch, 0, 70000, longType).count(), usualBlockValues);
    const ColumnBlock rest = storedValues(stretch, 65536, 70000 - 65536, longType);
    EXPECT_EQ(rest.count(), 70000 - 65536);
    EXPECT_EQ(rest.number(0), 65536);
}

TEST(StoredValues, OfMuchTextAreNoMoreThanABlockHas) {
    const CellStretch stretch = ownTexts(40, [](std::size_t i) {
        return i == 39 ? QString(mostBlockBytes / 2 + 1, u'\u00e9') : QString(qsizetype{1} << 20, u'y');
    });
    std::size_t first = 0;
    for (const qsizetype count : {32, 7, 1}) {
        EXPECT_EQ(storedValues(stretch, first, 40 - first, textType).count(), count) << first;
        first += static_cast<std::size_t>(count);
    }
}

} // namespace
