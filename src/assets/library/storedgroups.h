#pragma once

#include <cstddef>

#include "assets/property/property.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// The groups that records hold, in the order in which they are read; the read-only one is the
// schema's.
inline constexpr std::size_t kStoredGroups[] = {PropertyTableImp::kIterationGroup,
                                                PropertyTableImp::kReadWriteGroup};

// Visits the tables that properties of a group are connected to, once for each connection.
template <class Visit>
void ForEachConnection(const PropertyTableImp& table, std::size_t group, Visit&& visit) {
    for (const PropertyGroup::Entry& entry : table.Group(group)) {
        const PropertyBase& property = entry.Property();
        for (std::uint64_t at = 0; at < property.GetConnectedAssetCount(); ++at)
            if (PropertyTableImp* connected = property.ConnectedTable(at)) visit(*connected);
    }
}

// The same of all stored groups.
template <class Visit>
void ForEachConnection(const PropertyTableImp& table, Visit&& visit) {
    for (const std::size_t group : kStoredGroups)
        ForEachConnection(table, group, visit);
}

// Visits the properties of the stored groups that hold URIs.
template <class Visit>
void ForEachUri(const PropertyTableImp& table, Visit&& visit) {
    for (const std::size_t group : kStoredGroups)
        for (const PropertyGroup::Entry& entry : table.Group(group))
            if (entry.Property().GetType() == PropertyType::kUri) visit(entry.Property());
}

}  // namespace korvanet::platform::assets
