#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetinstance.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/property/fixedproperties.h"

namespace korvanet::platform::assets {
namespace {

// A table without a schema has no shape to be stored in.
PropertyTableImp* WithSchema(PropertyTableImp* table) {
    return table != nullptr && table->Base() != nullptr ? table : nullptr;
}

PropertyTableImp* SourceOf(IAssetDefinition* definition) {
    return WithSchema(dynamic_cast<AssetDefinition*>(definition));
}

PropertyTableImp* SourceOf(IAssetInstance* instance) {
    return WithSchema(dynamic_cast<AssetInstance*>(instance));
}

bool HasAssetType(const PropertyTableImp& table) {
    return !AssetTypeOf(table).empty();
}

bool RefusesEmpty(const IString& identifier) {
    if (!identifier.IsEmpty()) return false;
    HalvernError("New preset identifier shouldn't be NULL.").Deliver();
    return true;
}

PresetValue NumberOf(nuo::string_ref property, std::uint32_t number) {
    return PresetValue::Number(property, static_cast<std::int32_t>(number));
}

}  // namespace

bool AssetLibrary::RefusesPresets() const {
    if (!IsReadOnly()) return false;
    HalvernError("Cannot create new preset to read-only AssetLibrary.").Deliver();
    return true;
}

bool AssetLibrary::StorePreset(PropertyTableImp* source, nuo::string_ref identifier,
                               const std::vector<PresetValue>& values) {
    return source != nullptr && Guarded(false, [&] {
               return Document().CreatePreset(*source, identifier, values) != nullptr;
           });
}

bool AssetLibrary::StoreNewPreset(PropertyTableImp* source, const IString& identifier,
                                  bool hidden) {
    if (RefusesPresets() || RefusesEmpty(identifier)) return false;
    const nuo::string name = ToUtf8(identifier);
    return !Document().Contains(name) &&
           StorePreset(source, name, {PresetValue::Truth(fixed_property::kHidden, hidden)});
}

bool AssetLibrary::CreatePreset(IAssetDefinition* definition, const IString& identifier,
                                std::uint32_t version, std::uint32_t revision) {
    if (RefusesPresets() || RefusesEmpty(identifier)) return false;
    if (version == 0 || revision == 0) {
        HalvernError("Cannot create a new asset preset of which version or revision number is 0.")
            .Deliver();
        return false;
    }
    return StorePreset(SourceOf(definition), ToUtf8(identifier),
                       {NumberOf(fixed_property::kVersion, version),
                        NumberOf(fixed_property::kRevision, revision)});
}

bool AssetLibrary::CreatePreset(IAssetDefinition* definition, const IString& identifier,
                                bool hidden) {
    return StoreNewPreset(SourceOf(definition), identifier, hidden);
}

bool AssetLibrary::CreatePreset(IAssetDefinition* definition, std::uint32_t revision) {
    if (RefusesPresets()) return false;
    PropertyTableImp* const source = SourceOf(definition);
    return source != nullptr && StorePreset(source, nuo::string(source->Name()),
                                            {NumberOf(fixed_property::kRevision, revision)});
}

bool AssetLibrary::CreatePresetFromInstance(IAssetInstance* instance, const IString& identifier,
                                            bool hidden) {
    return StoreNewPreset(SourceOf(instance), identifier, hidden);
}

// The library's own reference, which it lets go of at the end, keeps the definition whole while it
// leaves; references of the host keep it longer.
bool AssetLibrary::RemovePreset(IAssetDefinition* definition) {
    if (IsReadOnly()) {
        HalvernError("Cannot remove preset from a read-only AssetLibrary.").Deliver();
        return false;
    }
    const intrusive_ptr<AssetDefinition> own(dynamic_cast<AssetDefinition*>(definition));
    if (!own || !Guarded(false, [&] { return Document().RemovePreset(*own); })) return false;
    // The reference that the caller came with. One that nobody counts has none beside ours.
    if (own->ReferenceCount() > 1) own->Release();
    return true;
}

bool AssetLibrary::CopyDefinition(IAssetDefinition* definition, const IString* identifier) {
    if (IsReadOnly()) {
        HalvernError("Cannot copy AssetDefinition to read-only AssetLibrary.").Deliver();
        return false;
    }
    PropertyTableImp* const source = SourceOf(definition);
    if (source == nullptr || !HasAssetType(*source)) return false;
    const nuo::string given = identifier != nullptr ? ToUtf8(*identifier) : nuo::string();
    const nuo::string name = given.empty() ? source->Name() : given;
    return Guarded(false, [&] { return Document().CopyDefinition(*source, name) != nullptr; });
}

}  // namespace korvanet::platform::assets
