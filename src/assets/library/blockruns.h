#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <set>

namespace korvanet::platform::assets {

// Block ids from `first` up to, not including, `end`.
struct BlockRun {
    std::uint32_t first;
    std::uint32_t end;

    std::uint32_t Count() const { return end - first; }
    friend auto operator<=>(const BlockRun&, const BlockRun&) = default;
};

// The free blocks of a store. The runs are disjoint and never adjacent: inserting merges them.
class BlockRuns {
public:
    using Set = std::set<BlockRun>;

    // No id of the run may be in the set already.
    void Insert(BlockRun run);
    // The first id of the lowest run with at least `count` blocks.
    std::optional<std::uint32_t> Find(std::uint32_t count) const;
    // Takes `count` blocks from the front of the run that begins at `first`.
    void Take(std::uint32_t first, std::uint32_t count);
    bool Contains(std::uint32_t id) const;
    bool IsEmpty() const { return runs_.empty(); }
    const Set& Runs() const { return runs_; }

private:
    Set runs_;
};

}  // namespace korvanet::platform::assets
