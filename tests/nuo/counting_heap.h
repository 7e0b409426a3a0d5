#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <vector>

#include "nuo/common/heap.h"

namespace nuo_tests {

/// Checks that each block is freed once, with the size and the alignment that it was asked for.
class CountingHeap : public nuo::plain_heap {
public:
    struct Request {
        std::uint64_t size;
        std::uint64_t alignment;
        bool operator==(const Request&) const = default;
    };

    ~CountingHeap() override {
        EXPECT_TRUE(live_.empty()) << live_.size() << " blocks were not freed";
    }

    void* malloc(std::uint64_t size, std::uint64_t alignment, void* hint) override {
        EXPECT_EQ(hint, nullptr);
        void* block = plain_heap::malloc(size, alignment, hint);
        live_[block] = {size, alignment};
        requests.push_back({size, alignment});
        return block;
    }
    void free(void* block, std::uint64_t size, std::uint64_t alignment) override {
        const auto found = live_.find(block);
        ASSERT_NE(found, live_.end());
        EXPECT_EQ(found->second, (Request{size, alignment}));
        live_.erase(found);
        plain_heap::free(block, size, alignment);
    }
    std::uint64_t live() const { return live_.size(); }

    std::vector<Request> requests;

private:
    std::map<void*, Request> live_;
};

}  // namespace nuo_tests
