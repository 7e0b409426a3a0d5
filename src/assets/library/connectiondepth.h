#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// How deep the connections of a table reach: 0 for one without any. A connection that leads back to
// a table on the way counts as one and is not followed.
class ConnectionDepth {
public:
    int Of(const PropertyTableImp& table);
    // How many tables all walks have met so far.
    std::uint64_t Steps() const { return steps_; }

private:
    static constexpr int kOnTheWay = -1;
    // Deep enough to be refused; the walk itself goes no further.
    static constexpr int kEnough = PropertyTableImp::kMaxConnectionDepth + 1;

    int Walk(const PropertyTableImp& table, int level);

    std::map<const PropertyTableImp*, int> depths_;
    bool met_circle_ = false;
    std::uint64_t steps_ = 0;
};

// The same for all of `tables` and for what they reach, in one pass, but for those from which
// connections lead to a circle: they are not in the result.
std::map<const PropertyTableImp*, int> DepthsOutsideCircles(
    const std::vector<const PropertyTableImp*>& tables);

// Those of `tables` from which connections lead to one of `changed`, and these.
std::set<const PropertyTableImp*> LeadingTo(const std::vector<const PropertyTableImp*>& changed,
                                            const std::vector<const PropertyTableImp*>& tables);

}  // namespace korvanet::platform::assets
