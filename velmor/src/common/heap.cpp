#include "nuo/common/heap.h"

#include <new>
#include <typeinfo>

namespace nuo {
namespace {

class dummy_extern_heap final : public ext_heap {
public:
    void* malloc(std::uint64_t, std::uint64_t, void*) override { return nullptr; }
    void free(void*, std::uint64_t, std::uint64_t) override {}
    ext_heap* extern_heap() override { return nullptr; }
    bool equal_to(const heap& other) const override { return typeid(*this) == typeid(other); }

    extern_block allocate_block(std::uint64_t) override { return invalid_extern_block; }
    std::uint64_t release_block(const extern_block&) override { return 0; }
    std::uint64_t block_size(const extern_block&) override { return 0; }
    std::uint64_t resize_block(const extern_block&, std::uint64_t) override { return 0; }
    void* map_block(const extern_block&) override { return nullptr; }
    void* map_block_part(const extern_block&, std::uint64_t, std::uint64_t) override {
        return nullptr;
    }
    std::uint64_t unmap_block(const extern_block&) override { return 0; }
    std::uint64_t read_block(const extern_block&, std::uint64_t, void*, std::uint64_t) override {
        return 0;
    }
    std::uint64_t write_block(const extern_block&, std::uint64_t, const void*,
                              std::uint64_t) override {
        return 0;
    }
    std::uint64_t block_count() override { return 0; }
    std::uint64_t used_size() override { return 0; }
    std::uint64_t free_size() override { return 0; }
    void* native_handle() override { return nullptr; }
};

/// Built in place on first use and never destroyed: strings of static duration may be released
/// after every other static object is gone.
template <class Heap>
Heap* immortal() {
    alignas(Heap) static unsigned char storage[sizeof(Heap)];
    return new (storage) Heap;
}

heap* default_heap = nullptr;

}  // namespace

heap::~heap() = default;

void* plain_heap::malloc(std::uint64_t size, std::uint64_t, void*) {
    return ::operator new(size);
}
void plain_heap::free(void* block, std::uint64_t, std::uint64_t) {
    ::operator delete(block);
}
ext_heap* plain_heap::extern_heap() {
    return nullptr;
}
bool plain_heap::equal_to(const heap& other) const {
    return typeid(*this) == typeid(other);
}

heap& get_heap() {
    if (default_heap == nullptr) default_heap = immortal<plain_heap>();
    return *default_heap;
}

ext_heap& get_extern_heap() {
    static ext_heap* const only = immortal<dummy_extern_heap>();
    return *only;
}

}  // namespace nuo
