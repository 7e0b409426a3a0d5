#include "assets/library/connectiondepth.h"

#include <algorithm>

#include "assets/library/storedgroups.h"

namespace korvanet::platform::assets {

// In a circle a table met earlier counts for less than it is from another start, so what a walk
// with a circle in it found does not serve the next one.
int ConnectionDepth::Of(const PropertyTableImp& table) {
    met_circle_ = false;
    const int depth = Walk(table, 0);
    if (met_circle_) depths_.clear();
    return depth;
}

int ConnectionDepth::Walk(const PropertyTableImp& table, int level) {
    ++steps_;
    const auto [known, fresh] = depths_.emplace(&table, kOnTheWay);
    if (!fresh && known->second == kOnTheWay) {
        met_circle_ = true;
        return 0;
    }
    if (!fresh) return known->second;
    int deepest = 0;
    ForEachConnection(table, [&](const PropertyTableImp& connected) {
        const int below = level >= kEnough ? kEnough : Walk(connected, level + 1);
        deepest = std::max(deepest, 1 + below);
    });
    return depths_[&table] = deepest;
}

}  // namespace korvanet::platform::assets
