#include "assets/manager/base/guarded.h"

#include <stdexcept>

#include "assets/manager/base/librarynamespaces.h"
#include "nuo/common/exception.h"

namespace {

using korvanet::platform::assets::Guarded;
using korvanet::platform::assets::namespace_creating_failed;

TEST(Guarded, GivesWhatTheWorkReturns) {
    EXPECT_TRUE(Guarded(false, [] { return true; }));
    EXPECT_EQ(Guarded(0, [] { return std::uint64_t{1} << 40; }), std::uint64_t{1} << 40);
    int number = 3;
    EXPECT_EQ(Guarded(nullptr, [&] { return &number; }), &number);
}

TEST(Guarded, GivesTheFailureForEverythingThatIsRaised) {
    EXPECT_FALSE(Guarded(false, []() -> bool { NUO_RAISE(namespace_creating_failed, "x"); }));
    EXPECT_EQ(Guarded(nullptr, []() -> int* { throw std::bad_alloc(); }), nullptr);
    EXPECT_EQ(Guarded(7u, []() -> std::uint64_t { throw 42; }), 7u);
}

TEST(Guarded, TellsWhetherWorkWithoutAResultCameToItsEnd) {
    int steps = 0;
    EXPECT_TRUE(Guarded([&] { ++steps; }));
    EXPECT_FALSE(Guarded([&] {
        ++steps;
        throw std::runtime_error("stop");
    }));
    EXPECT_EQ(steps, 2);
}

}  // namespace
