#include "assets/asset/assetmeta.h"

#include <korvanet/platform/assets/ivalue.h>

#include "assets/localization/localizationmanagerimp.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/modulecontext.h"
#include "assets/property/propertytable.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemadefinition.h"

namespace korvanet::platform::assets::asset_meta {
namespace {

constexpr std::size_t kIteration = PropertyTableImp::kIterationGroup;
constexpr std::size_t kReadOnly = PropertyTableImp::kReadOnlyGroup;

constexpr nuo::string_ref kImplementationNames[] = {
    "ImplementationPreview", "ImplementationMentalRay", "ImplementationCGFX",
    "ImplementationHLSL",    "ImplementationHZR",       "ImplementationFleetRT",
    "ImplementationGeneric"};
constexpr nuo::string_ref kUiDefinitionNames[kUiDefinitionCount] = {
    fixed_property::kUiDefinition, fixed_property::kAdvancedUiDefinition};

constexpr nuo::string_ref kStoredProceduralType = "RPCGeometry";
constexpr nuo::string_ref kProceduralType = "proceduralgeometry";

template <class I>
const I* ValueOf(const PropertyTableImp& table, std::size_t group, nuo::string_ref name) {
    const PropertyBase* property = table.FindInGroup(group, name);
    return property != nullptr ? dynamic_cast<const I*>(property->GetValue()) : nullptr;
}

nuo::string_ref WithoutTrailingBlanks(nuo::string_ref text) {
    while (!text.empty() && text.back() == ' ')
        text = text.substr(0, text.size() - 1);
    return text;
}

/** The name of the implementation at `index` among those that are there; null past the last. */
const nuo::string_ref* ImplementationName(const PropertyTableImp& table, std::uint64_t index) {
    for (const nuo::string_ref& name : kImplementationNames) {
        if (table.FindInGroup(kReadOnly, name) == nullptr) continue;
        if (index-- == 0) return &name;
    }
    return nullptr;
}

}  // namespace

std::uint64_t TextCount(const PropertyTableImp& table, std::size_t group, nuo::string_ref name) {
    const PropertyBase* property = table.FindInGroup(group, name);
    return property != nullptr ? assets::TextCount(*property) : 0;
}

std::int32_t Integer(const PropertyTableImp& table, std::size_t group, nuo::string_ref name) {
    const auto* value = ValueOf<IIntegerValue>(table, group, name);
    return value != nullptr && value->GetDimension() > 0 ? value->GetValue(0) : 0;
}

bool Boolean(const PropertyTableImp& table, std::size_t group, nuo::string_ref name) {
    // Asked for each definition of a listing: its type tells what it is, without a cross-cast.
    const PropertyBase* property = table.FindInGroup(group, name);
    return property != nullptr && property->GetType() == PropertyType::kBoolean &&
           static_cast<const IBooleanValue*>(property->GetValue())->GetValue(0);
}

nuo::string Localized(const ModuleContext& context, const nuo::string& key,
                      const core::IString& locale, const nuo::string& domain) {
    if (context.localization == nullptr) return key;
    bool found = false;
    return context.localization->Lookup(key, locale.AsUTF8(), key, domain, found);
}

nuo::string LocalizedAt(const PropertyTableImp& table, nuo::string_ref name, std::uint64_t index,
                        const core::IString& locale, const nuo::string& domain) {
    return Localized(table.Context(), table.GetText(kIteration, name, index), locale, domain);
}

nuo::string UiName(const PropertyTableImp& table, const core::IString& locale,
                   const nuo::string& domain) {
    const nuo::string name = LocalizedAt(table, fixed_property::kUiName, 0, locale, domain);
    return nuo::string(WithoutTrailingBlanks(name));
}

std::uint64_t ThumbnailCount(const PropertyTableImp& table) {
    return table.GetText(kIteration, fixed_property::kThumbnail).empty() ? 0 : 1;
}

nuo::string AssetTypeForHosts(const nuo::string& stored) {
    return stored == kStoredProceduralType ? nuo::string(kProceduralType) : stored;
}

bool CheckIndex(std::uint64_t index, std::uint64_t count) {
    if (index < count) return true;
    HalvernError("Index is out of bound.").Deliver();
    return false;
}

bool GetListText(const PropertyTableImp& table, nuo::string_ref name, std::uint64_t index,
                 core::IString& out, const core::IString& locale, const nuo::string& domain) {
    if (!CheckIndex(index, TextCount(table, kIteration, name))) return false;
    Assign(out, LocalizedAt(table, name, index, locale, domain));
    return true;
}

bool GetThumbnailName(const PropertyTableImp& table, std::uint64_t index, core::IString& out) {
    if (!CheckIndex(index, ThumbnailCount(table))) return false;
    Assign(out, fixed_property::kThumbnail);
    return true;
}

bool GetThumbnail(const PropertyTableImp& table, std::uint64_t index, core::IString& out) {
    if (!CheckIndex(index, ThumbnailCount(table))) return false;
    Assign(out, table.GetText(kIteration, fixed_property::kThumbnail, index));
    return true;
}

bool GetDescription(const PropertyTableImp& table, core::IString& out, const core::IString& locale,
                    const nuo::string& domain) {
    const nuo::string key = table.GetText(kIteration, fixed_property::kDescription);
    if (key.empty()) {
        // Misspelt on purpose: hosts know the message in this form.
        HalvernError("No desctiption property on this asset.").Deliver();
        Assign(out, nuo::string_ref());
        return false;
    }
    Assign(out, Localized(table.Context(), key, locale, domain));
    return true;
}

bool GetUiDefinitionName(std::uint64_t index, core::IString& out) {
    if (!CheckIndex(index, kUiDefinitionCount)) return false;
    Assign(out, kUiDefinitionNames[index]);
    return true;
}

bool GetUiDefinition(const PropertyTableImp& table, std::uint64_t index, core::IString& out) {
    if (!CheckIndex(index, kUiDefinitionCount)) return false;
    Assign(out, table.GetText(kReadOnly, kUiDefinitionNames[index]));
    return true;
}

std::uint64_t ImplementationCount(const PropertyTableImp& table) {
    std::uint64_t count = 0;
    for (const nuo::string_ref& name : kImplementationNames) {
        if (table.FindInGroup(kReadOnly, name) != nullptr) ++count;
    }
    return count;
}

bool GetImplementationIdentifier(const PropertyTableImp& table, std::uint64_t index,
                                 core::IString& out) {
    if (!CheckIndex(index, ImplementationCount(table))) return false;
    const nuo::string_ref* name = ImplementationName(table, index);
    if (name == nullptr) {
        HalvernError("Can't get implementation identifier.").Deliver();
        return false;
    }
    Assign(out, *name);
    return true;
}

bool GetImplementationUri(const PropertyTableImp& table, std::uint64_t index, core::IString& out) {
    if (!CheckIndex(index, ImplementationCount(table))) return false;
    const nuo::string_ref* name = ImplementationName(table, index);
    if (name == nullptr) {
        HalvernError("Can't get implementation URI.").Deliver();
        return false;
    }
    Assign(out, table.GetText(kReadOnly, *name));
    return true;
}

nuo::string VersionGuid(const PropertyTableImp& table) {
    const nuo::string stored = table.GetText(kIteration, fixed_property::kVersionGuid);
    return stored.empty() ? MakeIdentifier() : stored;
}

bool IsDerivedFromSchema(const PropertyTableImp& table, const nuo::string& id) {
    if (id.empty()) return false;
    for (const auto* schema = static_cast<const KRVTSchemaDefinition*>(table.Base());
         schema != nullptr; schema = schema->BaseDefinition()) {
        if (schema->Id() == id) return true;
    }
    return false;
}

}  // namespace korvanet::platform::assets::asset_meta
