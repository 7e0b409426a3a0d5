#include "assets/library/connectiondepth.h"

#include <algorithm>

#include "assets/library/storedgroups.h"

namespace korvanet::platform::assets {

int ConnectionDepth::Of(const PropertyTableImp& table) {
    return Walk(table, 0);
}

int ConnectionDepth::Walk(const PropertyTableImp& table, int level) {
    const auto [known, fresh] = depths_.emplace(&table, kOnTheWay);
    if (!fresh) return known->second == kOnTheWay ? 0 : known->second;
    int deepest = 0;
    ForEachConnection(table, [&](const PropertyTableImp& connected) {
        const int below = level >= kEnough ? kEnough : Walk(connected, level + 1);
        deepest = std::max(deepest, 1 + below);
    });
    return depths_[&table] = deepest;
}

}  // namespace korvanet::platform::assets
