#include "assets/library/connectiongraph.h"

#include <algorithm>

#include "assets/library/storedgroups.h"

namespace korvanet::platform::assets {

ConnectionGraph::ConnectionGraph(const std::vector<const PropertyTableImp*>& tables) {
    for (const PropertyTableImp* table : tables)
        NumberOf(*table);
    for (std::size_t number = 0; number < nodes_.size(); ++number) {
        const auto take = [this](const PropertyTableImp& connected) {
            targets_.push_back(NumberOf(connected));
        };
        const PropertyTableImp& table = *nodes_[number].table;
        Span targets{targets_.size(), targets_.size()};
        ForEachConnection(table, kStoredGroups[0], take);
        const std::size_t split = targets_.size();
        ForEachConnection(table, kStoredGroups[1], take);
        targets.end = targets_.size();
        nodes_[number].targets = targets;
        nodes_[number].split = split;
    }
    GatherSources();
    MeasureOutsideCircles();
}

// In a circle a table met earlier counts for less than it is from another start, so what a walk
// finds there does not serve the next one.
int ConnectionGraph::DepthOf(const PropertyTableImp& table) {
    ++walks_;
    return Walk(numbers_.at(&table), 0);
}

bool ConnectionGraph::LeadsToCircle(const PropertyTableImp& table) const {
    return nodes_[numbers_.at(&table)].depth == kUnknown;
}

std::vector<const PropertyTableImp*> ConnectionGraph::LeadingTo(
    const std::vector<const PropertyTableImp*>& targets) const {
    std::vector<bool> met(nodes_.size());
    std::vector<std::size_t> open;
    for (const PropertyTableImp* table : targets) {
        open.push_back(numbers_.at(table));
        met[open.back()] = true;
    }
    std::vector<const PropertyTableImp*> leading;
    for (std::size_t next = 0; next < open.size(); ++next) {
        const Span sources = nodes_[open[next]].sources;
        for (std::size_t at = sources.begin; at < sources.end; ++at) {
            if (met[sources_[at]]) continue;
            met[sources_[at]] = true;
            open.push_back(sources_[at]);
            leading.push_back(nodes_[sources_[at]].table);
        }
    }
    return leading;
}

std::size_t ConnectionGraph::NumberOf(const PropertyTableImp& table) {
    const auto [known, fresh] = numbers_.emplace(&table, nodes_.size());
    if (fresh) nodes_.push_back({&table, {}, 0, {}});
    return known->second;
}

// Each table is given room for as many as are connected to it before any is put there.
void ConnectionGraph::GatherSources() {
    sources_.resize(targets_.size());
    for (const std::size_t target : targets_)
        ++nodes_[target].sources.end;
    std::size_t begin = 0;
    for (Node& node : nodes_) {
        const std::size_t count = node.sources.end;
        node.sources = {begin, begin};
        begin += count;
    }
    for (std::size_t number = 0; number < nodes_.size(); ++number) {
        const Span targets = nodes_[number].targets;
        for (std::size_t at = targets.begin; at < targets.end; ++at)
            sources_[nodes_[targets_[at]].sources.end++] = number;
    }
}

// From the tables without connections on: one is measured when all that it leads to are.
void ConnectionGraph::MeasureOutsideCircles() {
    std::vector<std::size_t> unmeasured(nodes_.size());
    std::vector<int> reached(nodes_.size());
    std::vector<std::size_t> open;
    for (std::size_t number = 0; number < nodes_.size(); ++number) {
        unmeasured[number] = nodes_[number].targets.end - nodes_[number].targets.begin;
        if (unmeasured[number] == 0) open.push_back(number);
    }
    while (!open.empty()) {
        Node& node = nodes_[open.back()];
        const int depth = node.depth = reached[open.back()];
        open.pop_back();
        for (std::size_t at = node.sources.begin; at < node.sources.end; ++at) {
            const std::size_t source = sources_[at];
            reached[source] = std::max(reached[source], depth + 1);
            if (--unmeasured[source] == 0) open.push_back(source);
        }
    }
}

int ConnectionGraph::Walk(std::size_t number, int level) {
    Node& node = nodes_[number];
    if (node.depth != kUnknown) return node.depth;
    if (node.walk != walks_) {
        node.walk = walks_;
        node.depth_in_walk = kUnknown;
        node.met = node.targets.begin;
    }
    if (node.depth_in_walk != kUnknown) return node.depth_in_walk;
    int deepest = 0;
    // A group that the walk has begun with is not begun again.
    const std::size_t groups[] = {node.targets.begin, node.split, node.targets.end};
    for (int group = 0; group < 2; ++group) {
        if (node.met > groups[group] || groups[group] == groups[group + 1]) continue;
        for (std::size_t at = groups[group]; at < groups[group + 1]; ++at) {
            node.met = std::max(node.met, at + 1);
            ++steps_;
            const int below = level >= kEnough ? kEnough : Walk(targets_[at], level + 1);
            deepest = std::max(deepest, 1 + below);
        }
    }
    return node.depth_in_walk = deepest;
}

bool ReachTooDeep(const std::vector<const PropertyTableImp*>& tables,
                  const std::vector<const PropertyTableImp*>& changed, int most,
                  std::uint64_t most_steps) {
    ConnectionGraph graph(tables);
    const auto may_measure = [&](const PropertyTableImp* table) {
        return graph.Steps() <= most_steps || !graph.LeadsToCircle(*table);
    };
    for (const PropertyTableImp* table : changed)
        if (!may_measure(table) || graph.DepthOf(*table) > most) return true;
    for (const PropertyTableImp* table : graph.LeadingTo(changed))
        if (may_measure(table) && graph.DepthOf(*table) > most) return true;
    return false;
}

}  // namespace korvanet::platform::assets
