#pragma once

#include <cstdint>
#include <vector>

#include "assets/property/intrusive.h"
#include "assets/property/propertydescriptor.h"
#include "assets/property/propertytable.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Which properties the two records of a definition hold, in their order. A record tells nothing of
// itself, so the layout that it was written with must be known to read it: the library takes the
// layouts of its schemas when they are loaded, and compares them with those of the present schemas
// when it saves.
class RecordLayout {
public:
    struct Item {
        intrusive_ptr<PropertyDescriptor> descriptor;
        std::uint32_t flags;  // as they were when the layout was taken
    };
    using Items = std::vector<Item>;

    RecordLayout() = default;
    // The stored properties of the two writable groups of a schema.
    explicit RecordLayout(const PropertyTableImp& schema);

    // `group` is PropertyTableImp::kReadWriteGroup or kIterationGroup.
    const Items& Group(std::size_t group) const { return groups_[group]; }

    // Would a record of the one read the same by the other?
    bool SameForm(const RecordLayout& other) const;

private:
    Items groups_[2];
};

// False for the two properties that no record holds.
bool IsStored(nuo::string_ref property);

}  // namespace korvanet::platform::assets
