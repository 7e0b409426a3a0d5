#include "assets/library/blockruns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using korvanet::platform::assets::BlockRun;
using korvanet::platform::assets::BlockRuns;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(BlockRuns, KeepsDisjointRunsInOrder) {
    BlockRuns runs;
    runs.Insert({8, 9});
    runs.Insert({2, 4});
    EXPECT_THAT(runs.Runs(), ElementsAre(BlockRun{2, 4}, BlockRun{8, 9}));
}

TEST(BlockRuns, MergesWithTheRunBeforeBehindAndBoth) {
    BlockRuns runs;
    runs.Insert({2, 4});
    runs.Insert({4, 5});
    EXPECT_THAT(runs.Runs(), ElementsAre(BlockRun{2, 5}));
    runs.Insert({1, 2});
    EXPECT_THAT(runs.Runs(), ElementsAre(BlockRun{1, 5}));
    runs.Insert({8, 9});
    runs.Insert({5, 8});
    EXPECT_THAT(runs.Runs(), ElementsAre(BlockRun{1, 9}));
}

TEST(BlockRuns, FindsTheLowestRunThatFits) {
    BlockRuns runs;
    runs.Insert({1, 3});
    runs.Insert({5, 10});
    runs.Insert({20, 30});
    EXPECT_EQ(runs.Find(1), 1u);
    EXPECT_EQ(runs.Find(2), 1u);
    EXPECT_EQ(runs.Find(3), 5u);
    EXPECT_EQ(runs.Find(6), 20u);
    EXPECT_EQ(runs.Find(11), std::nullopt);
}

TEST(BlockRuns, TakesFromTheFront) {
    BlockRuns runs;
    runs.Insert({5, 10});
    runs.Take(5, 3);
    EXPECT_THAT(runs.Runs(), ElementsAre(BlockRun{8, 10}));
    runs.Take(8, 2);
    EXPECT_THAT(runs.Runs(), IsEmpty());
}

TEST(BlockRuns, ContainsTheIdsOfItsRuns) {
    BlockRuns runs;
    EXPECT_FALSE(runs.Contains(0));
    runs.Insert({2, 4});
    EXPECT_FALSE(runs.Contains(1));
    EXPECT_TRUE(runs.Contains(2));
    EXPECT_TRUE(runs.Contains(3));
    EXPECT_FALSE(runs.Contains(4));
    EXPECT_FALSE(runs.Contains(0xFFFFFFFF));
}

}  // namespace
