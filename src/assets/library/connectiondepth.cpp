#include "assets/library/connectiondepth.h"

#include <algorithm>

#include "assets/library/storedgroups.h"

namespace korvanet::platform::assets {
namespace {

// Who is connected to whom, seen from both sides.
struct Connections {
    explicit Connections(const std::vector<const PropertyTableImp*>& tables) : open(tables) {
        while (!open.empty()) {
            const PropertyTableImp* const table = open.back();
            open.pop_back();
            if (!count_of.emplace(table, 0).second) continue;
            ForEachConnection(*table, [&](const PropertyTableImp& connected) {
                ++count_of[table];
                sources.emplace(&connected, table);
                open.push_back(&connected);
            });
        }
    }

    std::vector<const PropertyTableImp*> open;
    std::map<const PropertyTableImp*, std::uint64_t> count_of;
    std::multimap<const PropertyTableImp*, const PropertyTableImp*> sources;
};

}  // namespace

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

// From the tables without connections on: one is finished when all that it leads to are.
std::map<const PropertyTableImp*, int> DepthsOutsideCircles(
    const std::vector<const PropertyTableImp*>& tables) {
    Connections graph(tables);
    std::map<const PropertyTableImp*, int> reached;
    std::map<const PropertyTableImp*, int> finished;
    for (const auto& [table, count] : graph.count_of)
        if (count == 0) graph.open.push_back(table);
    while (!graph.open.empty()) {
        const PropertyTableImp* const table = graph.open.back();
        graph.open.pop_back();
        const int depth = finished[table] = reached[table];
        const auto [first, last] = graph.sources.equal_range(table);
        for (auto at = first; at != last; ++at) {
            int& above = reached[at->second];
            above = std::max(above, depth + 1);
            if (--graph.count_of[at->second] == 0) graph.open.push_back(at->second);
        }
    }
    return finished;
}

std::set<const PropertyTableImp*> LeadingTo(const std::vector<const PropertyTableImp*>& changed,
                                            const std::vector<const PropertyTableImp*>& tables) {
    const Connections graph(tables);
    std::set<const PropertyTableImp*> leading(changed.begin(), changed.end());
    std::vector<const PropertyTableImp*> open = changed;
    while (!open.empty()) {
        const auto [first, last] = graph.sources.equal_range(open.back());
        open.pop_back();
        for (auto at = first; at != last; ++at)
            if (leading.insert(at->second).second) open.push_back(at->second);
    }
    return leading;
}

}  // namespace korvanet::platform::assets
