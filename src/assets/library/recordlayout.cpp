#include "assets/library/recordlayout.h"

#include <algorithm>

namespace korvanet::platform::assets {
namespace {

RecordLayout::Items ItemsOf(const PropertyGroup& group) {
    RecordLayout::Items items;
    items.reserve(group.Size());
    for (const PropertyGroup::Entry& entry : group) {
        if (!IsStored(entry.Name())) continue;
        PropertyDescriptor& descriptor = entry.Property().Descriptor();
        items.push_back({intrusive_ptr<PropertyDescriptor>(&descriptor), descriptor.flags});
    }
    return items;
}

// What else the flags say does not reach the bytes.
bool SameBytes(const RecordLayout::Item& a, const RecordLayout::Item& b) {
    const bool a_tail = (a.flags & PropertyFlags::kConnectionMask) != 0;
    const bool b_tail = (b.flags & PropertyFlags::kConnectionMask) != 0;
    return a_tail == b_tail && a.descriptor->type == b.descriptor->type &&
           a.descriptor->name == b.descriptor->name;
}

}  // namespace

bool IsStored(nuo::string_ref property) {
    return !(property == "texture_MapChannel" || property == "unifiedbitmap_MapChannel");
}

RecordLayout::RecordLayout(const PropertyTableImp& schema)
    : groups_{ItemsOf(schema.Group(PropertyTableImp::kReadWriteGroup)),
              ItemsOf(schema.Group(PropertyTableImp::kIterationGroup))} {}

bool RecordLayout::SameForm(const RecordLayout& other) const {
    const auto same = [](const Items& a, const Items& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameBytes);
    };
    return same(groups_[0], other.groups_[0]) && same(groups_[1], other.groups_[1]);
}

}  // namespace korvanet::platform::assets
