#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// How deep the connections of tables reach: 0 for a table without any. Connections that lead back
// to a table on the way do not count. Each table is walked once, but for those that a start reaches
// along with a circle.
class ConnectionDepth {
public:
    int Of(const PropertyTableImp& table);
    // How many tables were met so far on walks that found a circle, and so serve no other walk.
    std::uint64_t StepsInCircles() const { return steps_in_circles_; }

private:
    static constexpr int kOnTheWay = -1;
    // Deep enough to be refused; the walk itself goes no further.
    static constexpr int kEnough = PropertyTableImp::kMaxConnectionDepth + 1;

    int Walk(const PropertyTableImp& table, int level);
    void Forget();

    std::map<const PropertyTableImp*, int> depths_;
    std::vector<const PropertyTableImp*> walked_;  // from the present start
    bool met_circle_ = false;
    std::uint64_t steps_ = 0;  // from the present start
    std::uint64_t steps_in_circles_ = 0;
};

// Those of `tables` from which connections lead to one of `changed`, these left out.
std::vector<const PropertyTableImp*> LeadingTo(const std::vector<const PropertyTableImp*>& changed,
                                               const std::vector<const PropertyTableImp*>& tables);

}  // namespace korvanet::platform::assets
