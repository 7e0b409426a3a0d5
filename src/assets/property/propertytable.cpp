#include "assets/property/propertytable.h"

#include <korvanet/platform/core/jpkuuid.h>

#include "assets/property/fixedproperties.h"
#include "assets/property/halvernasset.h"
#include "assets/property/modulecontext.h"
#include "assets/property/propertyaccess.h"
#include "assets/property/propertytableface.h"
#include "assets/property/widekey.h"
#include "velmor/array.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

PropertyTableImp::PropertyTableImp(TableKind kind, HalvernAsset& holder,
                                   const ModuleContext& context)
    : holder_(&holder), context_(&context), kind_(kind) {
    for (std::shared_ptr<PropertyGroup>& group : groups_) {
        group = std::make_shared<PropertyGroup>(*context.heap);
    }
    holder.table = this;
}

PropertyTableImp::~PropertyTableImp() {
    holder_->table = nullptr;
}

PropertyTableImp::GroupIndex PropertyTableImp::GroupOf(std::uint32_t flags) {
    if ((flags & PropertyFlags::kReadOnly) != 0) {
        return kReadOnlyGroup;
    }
    return (flags & PropertyFlags::kDefinitionIteratorData) != 0 ? kIterationGroup
                                                                 : kReadWriteGroup;
}

velmor::Object PropertyTableImp::HolderObject() const {
    return {context_->types.Asset(), holder_};
}

PropertyBase* PropertyTableImp::FindProperty(nuo::string_ref name) const {
    const PropertyGroup::Key key(name);
    for (const std::shared_ptr<PropertyGroup>& group : groups_) {
        if (PropertyBase* found = group->Find(key)) {
            return found;
        }
    }
    return nullptr;
}

velmor::Object PropertyTableImp::GetObject(std::size_t group, nuo::string_ref name) const {
    PropertyBase* found = FindInGroup(group, name);
    return found == nullptr ? velmor::Object() : found->AsObject();
}

std::uint64_t PropertyTableImp::GetArraySize(nuo::string_ref name) const {
    PropertyBase* found = FindProperty(name);
    const auto* elements =
        found == nullptr ? nullptr : velmor::bindOrNull<velmor::Array>(found->DataObject());
    return elements == nullptr ? 0 : elements->size();
}

nuo::string PropertyTableImp::GetText(std::size_t group, nuo::string_ref name,
                                      std::uint64_t index) const {
    const PropertyBase* found = FindInGroup(group, name);
    const auto* text = found == nullptr ? nullptr : ElementOf<nuo::string>(*found, index);
    return text == nullptr ? nuo::string() : *text;
}

void PropertyTableImp::AddProperty(OwnedProperty property) {
    Group(GroupOf(property->GetFlags())).Insert(std::move(property));
}

void PropertyTableImp::Enter(velmor::Namespace registry, const nuo::string& name) {
    name_ = name;
    if (!registry.valid()) {
        return;
    }
    registry.imp()->objects.emplace(name, HolderObject());
    registry_ = registry;
    holder_->registry = registry;
}

void PropertyTableImp::Detach() {
    if (registry_.valid()) {
        auto& objects = registry_.imp()->objects;
        const auto entry = objects.find(name_);
        // Another table may have taken the name since.
        if (entry != objects.end() && entry->second.data() == holder_) {
            objects.erase(entry);
        }
    }
    registry_ = {};
    holder_->registry = {};
    pinned_ = false;
}

nuo::string PropertyTableImp::GetQualifiedName() const {
    nuo::string_builder path;
    if (registry_.valid() && registry_.parent().valid()) {
        path.append(registry_.fullName());
    }
    path.append(nuo::string_ref("."));
    path.append(name_.ref());
    return path;
}

void PropertyTableImp::ClearConnections() {
    ClearOwnConnections();
    ClearConnections(kReadOnlyGroup);
}

void PropertyTableImp::ClearOwnConnections() {
    ClearConnections(kReadWriteGroup);
    ClearConnections(kIterationGroup);
}

void PropertyTableImp::ClearConnections(std::size_t group) {
    for (const PropertyGroup::Entry& entry : Group(group)) {
        entry.Property().ClearConnections();
    }
}

void PropertyTableImp::TakeGroup(std::size_t group, const PropertyTableImp& other) {
    if (group == kReadOnlyGroup) {
        groups_[group] = other.groups_[group];
    } else {
        *groups_[group] = *other.groups_[group];
    }
}

void PropertyTableImp::TakeGroups(const PropertyTableImp& other) {
    for (std::size_t group = 0; group < kGroupCount; ++group) {
        TakeGroup(group, other);
    }
}

void PropertyTableImp::Expire() {
    if (!pinned_) {
        Detach();
        DestroyTable(*this);
    }
}

nuo::string AssetTypeOf(const PropertyTableImp& table) {
    return table.GetText(PropertyTableImp::kReadOnlyGroup, fixed_property::kAssetType);
}

PropertyTableImp& MakeTable(const ModuleContext& context, TableKind kind) {
    const velmor::Type type = context.types.Asset();
    void* memory = context.heap->malloc(type.payload(), type.alignment(), nullptr);
    const velmor::Object object(type, memory);
    type.methods().construct(object, context.heap, context.runtime->extHeap());
    try {
        return *context.tables->MakeTable(kind, *static_cast<HalvernAsset*>(memory), context);
    } catch (...) {
        type.methods().destruct(object);
        context.heap->free(memory, type.payload(), type.alignment());
        throw;
    }
}

void DestroyTable(PropertyTableImp& table) {
    const velmor::Object holder = table.HolderObject();
    nuo::heap& heap = *table.Context().heap;
    const velmor::Type type = holder.type();
    type.methods().destruct(holder);
    heap.free(holder.data(), type.payload(), type.alignment());
}

nuo::string MakeIdentifier() {
    char text[core::JPKUUID::kTextLength + 1];
    core::JPKUUID().ToChars(text);
    return nuo::string(text);
}

PropertyBase* FindByWideName(const PropertyTableImp& table, const wchar_t* name) {
    return name == nullptr ? nullptr : table.FindByNameOrAlias(WideKey(name));
}

}  // namespace korvanet::platform::assets
