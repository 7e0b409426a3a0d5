#pragma once

#include <cstdint>
#include <map>

#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// How deep the connections of tables reach: 0 for a table without any. Connections that lead back
// to a table on the way do not count. Each table is walked once, but for those in circles.
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

}  // namespace korvanet::platform::assets
