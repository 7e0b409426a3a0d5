#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// Who is connected to whom among tables and what they reach, as it is when the graph is made.
class ConnectionGraph {
public:
    explicit ConnectionGraph(const std::vector<const PropertyTableImp*>& tables);

    // How deep a reader gets that loads the table and what it is connected to, group by group: 0
    // for one without connections. A connection that leads back to a table on the way counts as one
    // and is not followed, but for the second group of a table whose first one is being read: that
    // is read there. What leads to no circle is known since the graph was made, all else takes a
    // walk of its own.
    int DepthOf(const PropertyTableImp& table);
    bool LeadsToCircle(const PropertyTableImp& table) const;
    // How many connections all walks have met so far.
    std::uint64_t Steps() const { return steps_; }

    // The other tables from which connections lead to one of `targets`.
    std::vector<const PropertyTableImp*> LeadingTo(
        const std::vector<const PropertyTableImp*>& targets) const;

private:
    static constexpr int kUnknown = -1;
    // Deep enough to be refused; a walk goes no further.
    static constexpr int kEnough = PropertyTableImp::kMaxConnectionDepth + 1;

    // Places of numbers in one list for all tables.
    struct Span {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    struct Node {
        const PropertyTableImp* table;
        Span targets;
        std::size_t split = 0;  // where the targets of the second stored group begin
        Span sources;
        int depth = kUnknown;  // stays unknown where connections lead to a circle
        std::uint64_t walk = 0;
        std::size_t met = 0;           // targets that the walk has come to, from the first
        int depth_in_walk = kUnknown;  // unknown until a visit of the walk is over
    };

    std::size_t NumberOf(const PropertyTableImp& table);
    void GatherSources();
    void MeasureOutsideCircles();
    int Walk(std::size_t number, int level);

    std::unordered_map<const PropertyTableImp*, std::size_t> numbers_;
    std::vector<Node> nodes_;
    std::vector<std::size_t> targets_;
    std::vector<std::size_t> sources_;
    std::uint64_t walks_ = 0;
    std::uint64_t steps_ = 0;
};

// Whether one of `changed`, or one of `tables` that leads to one of them, reaches deeper than
// `most`. Once walks have met more than `most_steps` connections, what leads to circles counts as
// too deep among the changed ones, and is taken as it is among the others.
bool ReachTooDeep(const std::vector<const PropertyTableImp*>& tables,
                  const std::vector<const PropertyTableImp*>& changed, int most,
                  std::uint64_t most_steps);

}  // namespace korvanet::platform::assets
