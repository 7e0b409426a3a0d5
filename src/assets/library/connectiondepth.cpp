#include "assets/library/connectiondepth.h"

#include <algorithm>
#include <set>

#include "assets/library/storedgroups.h"

namespace korvanet::platform::assets {

// In a circle a table met earlier counts for less than it is from another start, so what a walk
// with a circle in it found does not serve the next one.
int ConnectionDepth::Of(const PropertyTableImp& table) {
    met_circle_ = false;
    steps_ = 0;
    walked_.clear();
    const int depth = Walk(table, 0);
    if (met_circle_) Forget();
    return depth;
}

void ConnectionDepth::Forget() {
    for (const PropertyTableImp* table : walked_)
        depths_.erase(table);
    steps_in_circles_ += steps_;
}

int ConnectionDepth::Walk(const PropertyTableImp& table, int level) {
    ++steps_;
    const auto [known, fresh] = depths_.emplace(&table, kOnTheWay);
    if (!fresh && known->second == kOnTheWay) {
        met_circle_ = true;
        return 0;
    }
    if (!fresh) return known->second;
    walked_.push_back(&table);
    int deepest = 0;
    ForEachConnection(table, [&](const PropertyTableImp& connected) {
        const int below = level >= kEnough ? kEnough : Walk(connected, level + 1);
        deepest = std::max(deepest, 1 + below);
    });
    return depths_[&table] = deepest;
}

std::vector<const PropertyTableImp*> LeadingTo(const std::vector<const PropertyTableImp*>& changed,
                                               const std::vector<const PropertyTableImp*>& tables) {
    std::multimap<const PropertyTableImp*, const PropertyTableImp*> sources;
    for (const PropertyTableImp* table : tables)
        ForEachConnection(
            *table, [&](const PropertyTableImp& connected) { sources.emplace(&connected, table); });
    std::set<const PropertyTableImp*> met(changed.begin(), changed.end());
    std::vector<const PropertyTableImp*> open = changed;
    std::vector<const PropertyTableImp*> leading;
    while (!open.empty()) {
        const auto [first, last] = sources.equal_range(open.back());
        open.pop_back();
        for (auto at = first; at != last; ++at) {
            if (!met.insert(at->second).second) continue;
            open.push_back(at->second);
            leading.push_back(at->second);
        }
    }
    return leading;
}

}  // namespace korvanet::platform::assets
