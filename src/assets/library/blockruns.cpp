#include "assets/library/blockruns.h"

#include <iterator>
#include <limits>

namespace korvanet::platform::assets {

void BlockRuns::Insert(BlockRun run) {
    auto behind = runs_.lower_bound(run);
    if (behind != runs_.begin()) {
        const auto before = std::prev(behind);
        if (before->end == run.first) {
            run.first = before->first;
            runs_.erase(before);
        }
    }
    if (behind != runs_.end() && behind->first == run.end) {
        run.end = behind->end;
        behind = runs_.erase(behind);
    }
    runs_.insert(behind, run);
}

std::optional<std::uint32_t> BlockRuns::Find(std::uint32_t count) const {
    for (const BlockRun& run : runs_)
        if (run.Count() >= count) return run.first;
    return std::nullopt;
}

void BlockRuns::Take(std::uint32_t first, std::uint32_t count) {
    const auto found = runs_.lower_bound({first, first});
    const BlockRun rest{first + count, found->end};
    const auto behind = runs_.erase(found);
    if (rest.Count() != 0) runs_.insert(behind, rest);
}

bool BlockRuns::Contains(std::uint32_t id) const {
    const auto behind = runs_.upper_bound({id, std::numeric_limits<std::uint32_t>::max()});
    return behind != runs_.begin() && id < std::prev(behind)->end;
}

}  // namespace korvanet::platform::assets
