#include "assets/schema/schemainheritance.h"

#include <utility>

#include "assets/property/propertyfactory.h"
#include "assets/schema/schemadefinition.h"

namespace korvanet::platform::assets {
namespace {

/** What a child keeps of its own flags: the roles of URIs, which depend on the element used. */
constexpr std::uint32_t kChildFlags = PropertyFlags::kUIDefinition | PropertyFlags::kImplementation;

PropertyBase& Add(PropertyTableImp& table, OwnedProperty property) {
    PropertyBase& added = *property;
    table.AddProperty(std::move(property));
    return added;
}

/** Gives a property other flags, and moves it when these select another group. */
void SetFlags(PropertyTableImp& table, PropertyBase& property, std::uint32_t flags) {
    PropertyDescriptor& descriptor = property.Descriptor();
    const std::size_t from = PropertyTableImp::GroupOf(descriptor.flags);
    if (PropertyTableImp::GroupOf(flags) == from) {
        descriptor.flags = flags;
        return;
    }
    const intrusive_ptr<PropertyDescriptor> moved(descriptor.Copy());
    moved->flags = flags;
    OwnedProperty copy = CopyProperty(property, *moved);
    table.Group(from).Remove(moved->name);
    table.AddProperty(std::move(copy));
}

}  // namespace

void InheritFrom(KRVTSchemaDefinition& child, const KRVTSchemaDefinition& base) {
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group) {
        for (const PropertyGroup::Entry& entry : base.Group(group)) {
            const PropertyBase& inherited = entry.Property();
            PropertyBase* own = child.FindProperty(inherited.Name().ref());
            if (own == nullptr) {
                AddCopy(child, inherited);
            } else {
                SetFlags(child, *own, (own->GetFlags() & kChildFlags) | inherited.GetFlags());
            }
        }
    }
}

PropertyBase& AddCopy(PropertyTableImp& table, const PropertyBase& source) {
    const intrusive_ptr<PropertyDescriptor> descriptor(source.Descriptor().Copy());
    return Add(table, CopyProperty(source, *descriptor));
}

PropertyBase& AddSharingCopy(PropertyTableImp& table, const PropertyBase& source) {
    return Add(table, CopyProperty(source));
}

intrusive_ptr<KRVTSchemaDefinition> CopySchema(const KRVTSchemaDefinition& schema) {
    const intrusive_ptr<KRVTSchemaDefinition> copy(
        static_cast<KRVTSchemaDefinition*>(&MakeTable(schema.Context(), TableKind::kSchema)));
    copy->SetName(schema.Id());
    copy->SetLibrary(schema.Library());
    for (const PropertyBase* property : schema.Properties())
        AddCopy(*copy, *property);
    for (const auto& own : schema.OwnAliases())
        copy->AddAlias(own.alias, own.target);
    // Only now: an alias may override one of the base.
    copy->SetBase(schema.Base());
    return copy;
}

}  // namespace korvanet::platform::assets
