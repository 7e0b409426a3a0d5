#include "assets/asset/assetcompare.h"

#include <algorithm>

#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {
namespace {

/** Values that tell one copy of an asset from another, and not what it looks like. */
constexpr nuo::string_ref kIgnoredNames[] = {
    fixed_property::kVersionGuid, fixed_property::kAssetLibId, fixed_property::kThumbnail,
    fixed_property::kBaseSchema,  fixed_property::kVersion,    fixed_property::kRevision};

bool IsIgnored(const nuo::string& name) {
    return std::any_of(std::begin(kIgnoredNames), std::end(kIgnoredNames),
                       [&](nuo::string_ref ignored) { return name == ignored; });
}

}  // namespace

bool AssetComparison::AreEqual(const PropertyTableImp& a, const PropertyTableImp& b) {
    const Pair pair(&a, &b);
    if (&a == &b || equal_.contains(pair)) return true;
    if (depth_ > PropertyTableImp::kMaxConnectionDepth || different_.contains(pair)) return false;
    const std::size_t before = trail_.size();
    equal_.insert(pair);
    trail_.push_back(pair);
    ++depth_;
    const bool same = SameGroups(a, b);
    --depth_;
    if (!same) {
        // What was found equal meanwhile may rest on this pair, which was taken to be equal.
        for (; trail_.size() > before; trail_.pop_back())
            equal_.erase(trail_.back());
        different_.insert(pair);
    }
    return same;
}

bool AssetComparison::SameGroups(const PropertyTableImp& a, const PropertyTableImp& b) {
    constexpr std::size_t kReadWrite = PropertyTableImp::kReadWriteGroup;
    constexpr std::size_t kIteration = PropertyTableImp::kIterationGroup;
    return a.Base() == b.Base() && SameGroup(a.Group(kReadWrite), b.Group(kReadWrite)) &&
           SameGroup(a.Group(kIteration), b.Group(kIteration));
}

bool AssetComparison::SameGroup(const PropertyGroup& a, const PropertyGroup& b) {
    if (a.Size() != b.Size()) return false;
    auto other = b.begin();
    for (const PropertyGroup::Entry& entry : a) {
        if (!SameProperty(entry.Property(), other->Property())) return false;
        ++other;
    }
    return true;
}

bool AssetComparison::SameProperty(const PropertyBase& a, const PropertyBase& b) {
    if (a.GetFlags() != b.GetFlags()) return false;
    if (public_only_ && !a.Descriptor().Has(PropertyFlags::kPublic)) return true;
    if (!(a.Name() == b.Name())) return false;
    if (!IsIgnored(a.Name()) && !a.IsEqual(static_cast<const IProperty*>(&b))) return false;
    return !deep_ || SameConnections(a, b);
}

bool AssetComparison::SameConnections(const PropertyBase& a, const PropertyBase& b) {
    const std::uint64_t count = a.GetConnectedAssetCount();
    if (count != b.GetConnectedAssetCount()) return false;
    for (std::uint64_t i = 0; i < count; ++i) {
        const PropertyTableImp* connected = a.ConnectedTable(i);
        if (connected == nullptr || !HasTwin(*connected, b)) return false;
    }
    return true;
}

bool AssetComparison::HasTwin(const PropertyTableImp& connected, const PropertyBase& others) {
    const nuo::string type = AssetTypeOf(connected);
    for (std::uint64_t i = 0; i < others.GetConnectedAssetCount(); ++i) {
        const PropertyTableImp* other = others.ConnectedTable(i);
        if (other != nullptr && AssetTypeOf(*other) == type && AreEqual(connected, *other)) {
            return true;
        }
    }
    return false;
}

}  // namespace korvanet::platform::assets
