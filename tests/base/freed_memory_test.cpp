#include "base/FreedMemory.h"

#include <QString>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace qir {
namespace {

constexpr std::size_t small = 200;
constexpr std::size_t large = std::size_t{100} << 10; // below what gets a mapping of its own

/// How many bytes at a place are 'x', whoever owns it now, with another one or two bytes before or behind: one alone
/// may be part of an address that the allocator keeps in a free block.
std::size_t lettersAt(std::uintptr_t place, std::size_t size) {
    const volatile char *bytes = reinterpret_cast<const volatile char *>(place);
    const auto isLetter = [&](std::size_t index) { return index < size && bytes[index] == 'x'; };
    std::size_t count = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const bool hasNeighbour = isLetter(i - 1) || isLetter(i - 2) || isLetter(i + 1) || isLetter(i + 2);
        count += isLetter(i) && hasNeighbour ? 1 : 0;
    }
    return count;
}

std::uintptr_t filled(std::size_t size) {
    void *memory = std::malloc(size);
    std::memset(memory, 'x', size);
    return reinterpret_cast<std::uintptr_t>(memory);
}

TEST(FreedMemory, IsWipedInThisBuild) {
    EXPECT_TRUE(FreedMemoryWipe::works());
}

TEST(FreedMemory, IsOverwrittenWhileAWipeLivesAndOnlyThen) {
    for (const std::size_t size : {small, large}) {
        const std::uintptr_t kept = filled(size);
        std::free(reinterpret_cast<void *>(kept));
        EXPECT_GT(lettersAt(kept, size), size / 2) << "this test would see nothing";
        {
            const FreedMemoryWipe outer;
            { const FreedMemoryWipe inner; }
            const std::uintptr_t wiped = filled(size);
            std::free(reinterpret_cast<void *>(wiped));
            EXPECT_EQ(lettersAt(wiped, size), 0U);
        }
        const std::uintptr_t after = filled(size);
        std::free(reinterpret_cast<void *>(after));
        EXPECT_GT(lettersAt(after, size), size / 2);
    }
}

TEST(FreedMemory, ABlockThatGrowsLeavesNothingBehind) {
    const FreedMemoryWipe wipe;
    const std::uintptr_t before = filled(small);
    void *fence = std::malloc(small); // so that it cannot grow in place
    auto *after = static_cast<char *>(std::realloc(reinterpret_cast<void *>(before), large));
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(std::count(after, after + small, 'x'), std::ptrdiff_t{small});
    EXPECT_EQ(lettersAt(before, small), 0U);
    std::free(after);
    std::free(fence);
}

TEST(FreedMemory, ABlockThatShrinksKeepsItsBeginningAlone) {
    const FreedMemoryWipe wipe;
    const std::uintptr_t before = filled(large);
    auto *after = static_cast<char *>(std::realloc(reinterpret_cast<void *>(before), small));
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(std::count(after, after + small, 'x'), std::ptrdiff_t{small});
    EXPECT_EQ(lettersAt(before + small, large - small), 0U);
    EXPECT_EQ(std::realloc(after, 0), nullptr);
    EXPECT_EQ(lettersAt(before, small), 0U);
}

/// The most memory that the process has had at once, in bytes.
std::size_t peakMemory() {
    rusage usage{};
    EXPECT_EQ(::getrusage(RUSAGE_SELF, &usage), 0);
    return static_cast<std::size_t>(usage.ru_maxrss) << 10;
}

TEST(FreedMemory, ABlockThatTheSystemTakesBackIsNotBroughtInAgain) {
    const FreedMemoryWipe wipe;
    constexpr std::size_t size = std::size_t{64} << 20;
    void *block = std::malloc(size); // but for one none of its pages is there yet
    std::memset(block, 0, 1);
    const std::size_t before = peakMemory();
    std::free(block);
    EXPECT_LT(peakMemory() - before, size / 8);
}

TEST(FreedMemory, ReachesWhatLibrariesFree) {
    const FreedMemoryWipe wipe;
    std::uintptr_t place = 0;
    {
        const QString text(small, QChar(u'x'));
        place = reinterpret_cast<std::uintptr_t>(text.constData());
        EXPECT_EQ(lettersAt(place, small * sizeof(QChar)), small);
    }
    EXPECT_EQ(lettersAt(place, small * sizeof(QChar)), 0U);
}

} // namespace
} // namespace qir
