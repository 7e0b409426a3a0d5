#pragma once

#include <cstddef>
#include <cstdint>

namespace nuo {

class ext_heap;

/// An allocator. The caller repeats to `free` the size and alignment that it gave to `malloc`; no
/// heap stores them. A heap outlives everything that was allocated from it.
class heap {
public:
    /// Every caller in the system passes a null `hint`.
    virtual void* malloc(std::uint64_t size, std::uint64_t alignment, void* hint) = 0;
    virtual void free(void* block, std::uint64_t size, std::uint64_t alignment) = 0;
    /// The companion for memory outside the process heap, or null.
    virtual ext_heap* extern_heap() = 0;
    /// True when both heaps are of the same dynamic class.
    virtual bool equal_to(const heap& other) const = 0;
    virtual ~heap();
};

/// The global allocation and release functions.
class plain_heap : public heap {
public:
    void* malloc(std::uint64_t size, std::uint64_t alignment, void* hint) override;
    void free(void* block, std::uint64_t size, std::uint64_t alignment) override;
    ext_heap* extern_heap() override;
    bool equal_to(const heap& other) const override;
};

/// Names a block of memory that lives outside the process heap.
struct extern_block {
    std::uint64_t first;
    std::uint64_t second;

    friend bool operator==(const extern_block&, const extern_block&) = default;
};

inline constexpr extern_block invalid_extern_block{~std::uint64_t{0}, ~std::uint64_t{0}};

/// A heap of memory outside the process. Only the dummy of `get_extern_heap` stands behind it: it
/// has no blocks, so each operation answers "invalid", zero or null.
class ext_heap : public heap {
public:
    virtual extern_block allocate_block(std::uint64_t size) = 0;
    virtual std::uint64_t release_block(const extern_block& block) = 0;
    virtual std::uint64_t block_size(const extern_block& block) = 0;
    virtual std::uint64_t resize_block(const extern_block& block, std::uint64_t size) = 0;
    virtual void* map_block(const extern_block& block) = 0;
    virtual void* map_block_part(const extern_block& block, std::uint64_t offset,
                                 std::uint64_t size) = 0;
    virtual std::uint64_t unmap_block(const extern_block& block) = 0;
    virtual std::uint64_t read_block(const extern_block& block, std::uint64_t offset, void* target,
                                     std::uint64_t size) = 0;
    virtual std::uint64_t write_block(const extern_block& block, std::uint64_t offset,
                                      const void* source, std::uint64_t size) = 0;
    virtual std::uint64_t block_count() = 0;
    virtual std::uint64_t used_size() = 0;
    virtual std::uint64_t free_size() = 0;
    virtual void* native_handle() = 0;
};

/// The process-wide default heap: the same object for ever, usable during static initialisation and
/// never destroyed, so that strings with static duration can be released at any time.
heap& get_heap();

/// The one external heap, which owns nothing.
ext_heap& get_extern_heap();

}  // namespace nuo
