#include "nuo/common/heap.h"

#include <gtest/gtest.h>

#include "tests/support/virtualslots.h"

namespace {

using halvern_tests::ExpectOrder;
using halvern_tests::kDestructor;
using halvern_tests::Place;

class OtherHeap : public nuo::plain_heap {};

TEST(Heap, DefaultIsTheSameObjectForEver) {
    EXPECT_EQ(&nuo::get_heap(), &nuo::get_heap());
}

TEST(Heap, DefaultIsAPlainHeap) {
    nuo::plain_heap plain;
    EXPECT_TRUE(nuo::get_heap().equal_to(plain));
    EXPECT_TRUE(plain.equal_to(nuo::get_heap()));
    EXPECT_EQ(nuo::get_heap().extern_heap(), nullptr);
}

TEST(Heap, EqualToComparesDynamicClasses) {
    nuo::plain_heap plain;
    OtherHeap other;
    EXPECT_FALSE(plain.equal_to(other));
    EXPECT_FALSE(other.equal_to(plain));
    EXPECT_TRUE(other.equal_to(OtherHeap()));
}

TEST(Heap, PlainHeapGivesWritableMemory) {
    nuo::plain_heap plain;
    auto* block = static_cast<char*>(plain.malloc(16, 8, nullptr));
    ASSERT_NE(block, nullptr);
    block[15] = 'x';
    plain.free(block, 16, 8);
}

TEST(Heap, OperationsKeepTheirOrder) {
    ExpectOrder(0, {Place(&nuo::heap::malloc), Place(&nuo::heap::free),
                    Place(&nuo::heap::extern_heap), Place(&nuo::heap::equal_to), kDestructor});
}

// Behind the four operations of a heap and its destructor.
TEST(ExternHeap, OperationsContinueThoseOfAHeap) {
    using nuo::ext_heap;
    ExpectOrder(6, {Place(&ext_heap::allocate_block), Place(&ext_heap::release_block),
                    Place(&ext_heap::block_size), Place(&ext_heap::resize_block),
                    Place(&ext_heap::map_block), Place(&ext_heap::map_block_part),
                    Place(&ext_heap::unmap_block), Place(&ext_heap::read_block),
                    Place(&ext_heap::write_block), Place(&ext_heap::block_count),
                    Place(&ext_heap::used_size), Place(&ext_heap::free_size),
                    Place(&ext_heap::native_handle)});
}

TEST(ExternHeap, OwnsNothing) {
    nuo::ext_heap& heap = nuo::get_extern_heap();
    EXPECT_EQ(&heap, &nuo::get_extern_heap());
    EXPECT_EQ(heap.malloc(16, 8, nullptr), nullptr);
    heap.free(nullptr, 16, 8);
    EXPECT_EQ(heap.extern_heap(), nullptr);
    EXPECT_TRUE(heap.equal_to(heap));
    EXPECT_FALSE(heap.equal_to(nuo::get_heap()));
}

TEST(ExternHeap, AnswersInvalidZeroAndNull) {
    nuo::ext_heap& heap = nuo::get_extern_heap();
    const nuo::extern_block block = heap.allocate_block(128);
    EXPECT_EQ(block, (nuo::extern_block{~0ull, ~0ull}));
    char bytes[4] = {};
    EXPECT_EQ(heap.release_block(block), 0u);
    EXPECT_EQ(heap.block_size(block), 0u);
    EXPECT_EQ(heap.resize_block(block, 4), 0u);
    EXPECT_EQ(heap.map_block(block), nullptr);
    EXPECT_EQ(heap.map_block_part(block, 0, 4), nullptr);
    EXPECT_EQ(heap.unmap_block(block), 0u);
    EXPECT_EQ(heap.read_block(block, 0, bytes, 4), 0u);
    EXPECT_EQ(heap.write_block(block, 0, bytes, 4), 0u);
    EXPECT_EQ(heap.block_count(), 0u);
    EXPECT_EQ(heap.used_size(), 0u);
    EXPECT_EQ(heap.free_size(), 0u);
    EXPECT_EQ(heap.native_handle(), nullptr);
}

}  // namespace
