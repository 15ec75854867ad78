#include "qirtbase/model/BodyCodec.h"
#include "tests/qirtbase/model/GeneratedBodies.h"
#include "tests/support/CountedMemory.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace qir {
namespace {

// What an accepted file may cost: in proportion to its bytes and cells, whatever its shape. By counts, so that no clock
// decides.

constexpr std::size_t fixedBytes = std::size_t{64} << 10;

/// Memory and allocations of reading a body and of writing it again.
void expectWithinBudget(const GeneratedBody &made) {
    SCOPED_TRACE(made.name);
    const auto bytes = static_cast<std::size_t>(made.bytes.size());
    const CountedMemory counted;
    const auto database = decodeBody(made.bytes);
    ASSERT_TRUE(database) << database.error().text.toStdString();
    const std::size_t peak = counted.peak();
    const std::size_t allocations = counted.allocations();
    EXPECT_EQ(encodeBody(*database), made.bytes);
    std::printf("%-40s %8zu bytes, %8zu cells: %5.1f times the bytes, %zu allocations\n", made.name.c_str(), bytes,
                made.cells, static_cast<double>(peak) / static_cast<double>(bytes), allocations);
    EXPECT_LE(peak, 14 * bytes + fixedBytes);
    EXPECT_LE(allocations, 8 * (made.tables + made.fields) + 64);
    EXPECT_LE(counted.peak(), 15 * bytes + fixedBytes);
}

TEST(Budget, ReadingABodyTakesMemoryInProportionToItsBytes) {
    if (!CountedMemory::counts())
        GTEST_SKIP() << "allocations are not counted in this build";
    for (const GeneratedBody &made : extremeBodies())
        expectWithinBudget(made);
    const int count = countFrom("QIR_RANDOM_BODIES", 30);
    for (int seed = 1; seed <= count; ++seed)
        expectWithinBudget(randomBody(static_cast<unsigned>(seed)));
}

} // namespace
} // namespace qir
