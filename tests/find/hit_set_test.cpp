#include "find/HitSet.h"

#include <gtest/gtest.h>

#include <random>

namespace qir {

namespace {

TEST(HitSetTest, AnEmptySetHasNoHits) {
    const HitSet none;
    EXPECT_EQ(none.count(), 0);
    EXPECT_FALSE(none.nextFrom({1, 1}));
    EXPECT_FALSE(none.previousFrom({1, 1}));
    EXPECT_FALSE(none.hit(0));
}

TEST(HitSetTest, CellsOutsideAreNoHits) {
    HitSet hits(2, 2);
    hits.set({3, 1}, true);
    hits.set({0, 1}, true);
    hits.set({1, 3}, true);
    EXPECT_EQ(hits.count(), 0);
    EXPECT_FALSE(hits.at({1, 3}));
}

TEST(HitSetTest, AgreesWithAListOfCells) {
    std::mt19937 random(11);
    constexpr int records = 700;
    constexpr int fields = 13;
    HitSet hits(records, fields);
    std::vector<bool> plain(static_cast<std::size_t>(records) * fields);
    const auto cellAt = [](std::size_t index) {
        return HitCell{static_cast<int>(index) / fields + 1, static_cast<int>(index) % fields + 1};
    };
    for (int round = 0; round < 300; ++round) {
        const std::size_t changed = random() % plain.size();
        plain[changed] = random() % 3 != 0;
        hits.set(cellAt(changed), plain[changed]);
        const std::size_t from = random() % plain.size();
        std::optional<HitCell> next;
        for (std::size_t i = from; i < plain.size() && !next; ++i)
            next = plain[i] ? std::optional(cellAt(i)) : std::nullopt;
        EXPECT_EQ(hits.nextFrom(cellAt(from)), next);
        std::optional<HitCell> previous;
        for (std::size_t i = from + 1; i > 0 && !previous; --i)
            previous = plain[i - 1] ? std::optional(cellAt(i - 1)) : std::nullopt;
        EXPECT_EQ(hits.previousFrom(cellAt(from)), previous);
        std::vector<HitCell> all;
        for (std::size_t i = 0; i < plain.size(); ++i) {
            if (plain[i])
                all.push_back(cellAt(i));
        }
        ASSERT_EQ(hits.count(), static_cast<std::int64_t>(all.size()));
        for (std::size_t number = 0; number < all.size(); number += 7)
            EXPECT_EQ(hits.hit(static_cast<std::int64_t>(number)), all[number]);
        EXPECT_FALSE(hits.hit(hits.count()));
    }
}

} // namespace

} // namespace qir
