#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>

#include <gtest/gtest.h>

// The order of the virtual operations is what code that was compiled earlier relies on. A pointer
// to a virtual member tells its place in the table of the class.

namespace halvern_tests {

// A destructor has two places of its own and no pointer.
inline constexpr long kDestructor = -1;

template <class Signature, class Class>
long Place(Signature Class::*operation) {
    std::uintptr_t raw = 0;
    std::memcpy(&raw, &operation, sizeof(raw));
    return static_cast<long>((raw - 1) / sizeof(void*));
}

// The places follow each other from `next` on.
inline void ExpectOrder(long next, std::initializer_list<long> places) {
    int count = 0;
    for (const long place : places) {
        if (place != kDestructor) {
            EXPECT_EQ(place, next) << "operation " << count;
        }
        next += place == kDestructor ? 2 : 1;
        ++count;
    }
}

}  // namespace halvern_tests
