#pragma once

#include <set>
#include <utility>
#include <vector>

#include "assets/property/property.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

/**
 * One run of comparing two assets by their values. They are equal when they have the same schema
 * object and, in the read-write and the iteration group, the same properties with equal flags and
 * values; meta values that tell one copy from another do not count.
 *
 * Deep, each connected asset must be equal to one of its asset type on the other side. Two assets
 * that are being compared further up count as equal, so that circles end; connections deeper than
 * PropertyTableImp::kMaxConnectionDepth make the assets unequal.
 */
class AssetComparison {
public:
    AssetComparison(bool deep, bool publicOnly) : deep_(deep), public_only_(publicOnly) {}

    bool AreEqual(const PropertyTableImp& a, const PropertyTableImp& b);

private:
    using Pair = std::pair<const PropertyTableImp*, const PropertyTableImp*>;

    bool SameGroups(const PropertyTableImp& a, const PropertyTableImp& b);
    bool SameGroup(const PropertyGroup& a, const PropertyGroup& b);
    bool SameProperty(const PropertyBase& a, const PropertyBase& b);
    bool SameConnections(const PropertyBase& a, const PropertyBase& b);
    bool HasTwin(const PropertyTableImp& connected, const PropertyBase& others);

    bool deep_;
    bool public_only_;
    int depth_ = 0;
    /** Pairs that are equal, or being compared. */
    std::set<Pair> equal_;
    /** The same in the order in which they were met. */
    std::vector<Pair> trail_;
    std::set<Pair> different_;
};

}  // namespace korvanet::platform::assets
