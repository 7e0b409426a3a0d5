#include "assets/schema/schemadefinition.h"

#include <korvanet/platform/core/idatawriter.h>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"
#include "assets/property/enumeration.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/widekey.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemaxmlwriter.h"

namespace korvanet::platform::assets {
namespace {

bool GiveText(const nuo::string* found, IString& text) {
    if (found == nullptr) return false;
    Assign(text, *found);
    return true;
}

}  // namespace

KRVTSchemaDefinition::KRVTSchemaDefinition(HalvernAsset& holder, const ModuleContext& context)
    : PropertyTable<IAssetSchema>(TableKind::kSchema, holder, context) {}

KRVTSchemaDefinition::~KRVTSchemaDefinition() = default;

IAssetSchema* KRVTSchemaDefinition::GetBaseSchema() const {
    return Base();
}

void KRVTSchemaDefinition::GetId(IString& id) const {
    Assign(id, Id());
}

bool KRVTSchemaDefinition::WriteTo(core::IDataWriter* writer) const {
    if (writer == nullptr || !writer->IsOpen()) return false;
    return Guarded(false, [&] {
        const nuo::string text = WriteSchemaXml(*this);
        return !text.empty() && writer->WriteExact(text.data(), text.size());
    });
}

std::uint64_t KRVTSchemaDefinition::GetAliasCount() const {
    std::uint64_t count = 0;
    for (const auto* schema = this; schema != nullptr; schema = schema->BaseDefinition()) {
        count += schema->aliases_.size();
    }
    return count;
}

bool KRVTSchemaDefinition::GetAlias(std::uint64_t index, IString& alias, IString& target) const {
    const Alias* found = AliasAt(index);
    if (found == nullptr) return false;
    Assign(alias, found->alias);
    Assign(target, found->target);
    return true;
}

bool KRVTSchemaDefinition::AddAlias(const wchar_t* alias, const wchar_t* target) {
    return AddAlias(FromWide(alias), FromWide(target));
}

bool KRVTSchemaDefinition::GetAliasTarget(const wchar_t* alias, IString& target) const {
    return GiveText(AliasTarget(WideKey(alias)), target);
}

bool KRVTSchemaDefinition::GetAliasFor(const wchar_t* target, IString& alias) const {
    return GiveText(AliasFor(WideKey(target)), alias);
}

bool KRVTSchemaDefinition::GetAssetType(IString& assetType) const {
    return GetReadOnlyText(fixed_property::kAssetType, assetType);
}

bool KRVTSchemaDefinition::GetLocalType(IString& localType) const {
    return GetReadOnlyText(fixed_property::kLocalType, localType);
}

bool KRVTSchemaDefinition::GetLocalName(IString& localName) const {
    return GetReadOnlyText(fixed_property::kLocalName, localName);
}

KRVTSchemaDefinition* KRVTSchemaDefinition::BaseDefinition() const {
    return static_cast<KRVTSchemaDefinition*>(Base());
}

PropertyBase* KRVTSchemaDefinition::FindByNameOrAlias(nuo::string_ref name) const {
    if (PropertyBase* property = FindProperty(name)) return property;
    const nuo::string* target = AliasTarget(name);
    return target != nullptr ? FindProperty(target->ref()) : nullptr;
}

const PropertyBase* KRVTSchemaDefinition::FindReadOnly(nuo::string_ref name) const {
    for (const auto* schema = this; schema != nullptr; schema = schema->BaseDefinition()) {
        if (const PropertyBase* property = schema->FindInGroup(kReadOnlyGroup, name)) {
            return property;
        }
    }
    return nullptr;
}

std::vector<PropertyBase*> KRVTSchemaDefinition::Properties() const {
    std::vector<PropertyBase*> properties;
    properties.reserve(Group(kReadWriteGroup).Size() + Group(kIterationGroup).Size() +
                       Group(kReadOnlyGroup).Size());
    SortedMultiGroupMergeIterator<IProperty*> walk(*this);
    for (walk.First(); walk.IsValid(); walk.Next()) {
        properties.push_back(static_cast<PropertyBase*>(walk.Current()));
    }
    return properties;
}

nuo::string KRVTSchemaDefinition::BaseId() const {
    const PropertyBase* property = FindProperty(fixed_property::kBaseSchema);
    const nuo::string* text = property != nullptr ? TextAt(*property, 0) : nullptr;
    return text != nullptr ? *text : nuo::string();
}

nuo::string KRVTSchemaDefinition::AssetType() const {
    const PropertyBase* property = FindReadOnly(fixed_property::kAssetType);
    const nuo::string* text = property != nullptr ? TextAt(*property, 0) : nullptr;
    return text != nullptr ? *text : nuo::string();
}

std::int32_t KRVTSchemaDefinition::Version() const {
    const PropertyBase* property = FindProperty(fixed_property::kSchemaVersion);
    if (property == nullptr) return 1;
    const auto* value = dynamic_cast<const IIntegerValue*>(property->GetValue());
    return value != nullptr && value->GetDimension() > 0 ? value->GetValue(0) : 1;
}

bool KRVTSchemaDefinition::AddAlias(const nuo::string& alias, const nuo::string& target) {
    if (alias.empty() || target.empty() || AliasTarget(alias) != nullptr ||
        alias_by_target_.contains(target)) {
        return false;
    }
    alias_by_name_.emplace(alias, aliases_.size());
    alias_by_target_.emplace(target, aliases_.size());
    aliases_.push_back(Alias{alias, target});
    return true;
}

const nuo::string* KRVTSchemaDefinition::AliasTarget(nuo::string_ref alias) const {
    const Alias* found = FindAlias(&KRVTSchemaDefinition::alias_by_name_, alias);
    return found != nullptr ? &found->target : nullptr;
}

const nuo::string* KRVTSchemaDefinition::AliasFor(nuo::string_ref target) const {
    const Alias* found = FindAlias(&KRVTSchemaDefinition::alias_by_target_, target);
    return found != nullptr ? &found->alias : nullptr;
}

const KRVTSchemaDefinition::Alias* KRVTSchemaDefinition::AliasAt(std::uint64_t index) const {
    for (const auto* schema = this; schema != nullptr; schema = schema->BaseDefinition()) {
        if (index < schema->aliases_.size()) return &schema->aliases_[index];
        index -= schema->aliases_.size();
    }
    return nullptr;
}

const KRVTSchemaDefinition::Alias* KRVTSchemaDefinition::FindAlias(
    AliasMap KRVTSchemaDefinition::*map, nuo::string_ref key) const {
    for (const auto* schema = this; schema != nullptr; schema = schema->BaseDefinition()) {
        const auto found = (schema->*map).find(key);
        if (found != (schema->*map).end()) return &schema->aliases_[found->second];
    }
    return nullptr;
}

bool KRVTSchemaDefinition::GetReadOnlyText(nuo::string_ref name, IString& text) const {
    const PropertyBase* property = FindReadOnly(name);
    return GiveText(property != nullptr ? TextAt(*property, 0) : nullptr, text);
}

KRVTSchemaDefinition* AsSchemaDefinition(IAssetSchema* schema) {
    return dynamic_cast<KRVTSchemaDefinition*>(schema);
}

}  // namespace korvanet::platform::assets
