#include <set>

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetmeta.h"
#include "assets/library/assetcopier.h"
#include "assets/library/generallibrary.h"
#include "assets/library/storedgroups.h"
#include "assets/library/tabletext.h"
#include "assets/manager/base/report.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemainheritance.h"
#include "assets/schema/schemamanager.h"

namespace korvanet::platform::assets {
namespace {

void SetValue(PropertyTableImp& table, const PresetValue& value) {
    switch (value.kind) {
        case PresetValue::Kind::kText:
            SetText(table, value.property, value.text);
            break;
        case PresetValue::Kind::kNumber:
            SetNumber(table, value.property, value.number);
            break;
        case PresetValue::Kind::kTruth:
            SetTruth(table, value.property, value.truth);
            break;
    }
}

}  // namespace

AssetDefinition* GeneralLibrary::CreatePreset(PropertyTableImp& source, nuo::string_ref identifier,
                                              const std::vector<PresetValue>& values) {
    SharedAssets::Entry former;
    HalvernAsset* const present = FindRecord(identifier);
    if (shared_.Enabled() && present != nullptr) former = SharedEntry(LoadRecord(*present));
    PropertyTableImp* const made = AssetCopier(*this).Copy(source, identifier);
    if (made == nullptr) return nullptr;
    for (const PresetValue& value : values)
        SetValue(*made, value);
    if (shared_.Enabled()) {
        if (present != nullptr) shared_.Leave(former);
        shared_.Enter(SharedEntry(*made));
    }
    auto& definition = static_cast<AssetDefinition&>(*made);
    definition.SetAssetLibId(identifier_);
    return &definition;
}

AssetDefinition* GeneralLibrary::CopyDefinition(PropertyTableImp& source,
                                                nuo::string_ref identifier) {
    AssetDefinition* const made = CreatePreset(source, identifier, {});
    // The files must be at hand when the source's library is gone, so they come now and not at the
    // save.
    if (made != nullptr) ImportFiles(*FindRecord(identifier)->table);
    return made;
}

// For a definition and all that is connected to it and not saved yet.
void GeneralLibrary::ImportFiles(PropertyTableImp& first) {
    std::vector<PropertyTableImp*> open{&first};
    std::set<const PropertyTableImp*> met{&first};
    while (!open.empty()) {
        PropertyTableImp& table = *open.back();
        open.pop_back();
        RewriteUris(table);
        ForEachConnection(table, [&](PropertyTableImp& connected) {
            if (connected.Holder().state != 0 && met.insert(&connected).second)
                open.push_back(&connected);
        });
    }
}

void GeneralLibrary::RewriteUris(PropertyTableImp& table) {
    for (const std::size_t group : kStoredGroups)
        for (const PropertyGroup::Entry& entry : table.Group(group))
            if (entry.Property().GetType() == PropertyType::kUri)
                resources_->Rewrite(entry.Property(), table.Name());
}

bool GeneralLibrary::RemovePreset(PropertyTableImp& definition) {
    if (!(TextOf(definition, asset_meta::kAssetLibId) == identifier_) || !IsRecord(definition)) {
        HalvernError("The Preset doesn't belong to this library.").Deliver();
        return false;
    }
    HalvernAsset& record = definition.Holder();
    if (shared_.Enabled()) shared_.Leave(SharedEntry(LoadRecord(record)));
    if (record.definitionBlock != HalvernAsset::kNoBlock)
        definition_store_->Free(record.definitionBlock);
    if (record.instanceBlock != HalvernAsset::kNoBlock) instance_store_->Free(record.instanceBlock);
    record.definitionBlock = record.instanceBlock = HalvernAsset::kNoBlock;
    definition.Detach();
    ++generation_;
    return true;
}

KRVTSchemaDefinition* GeneralLibrary::EnsureSchema(KRVTSchemaDefinition& schema) {
    if (schemas_->IsOwn(schema)) return &schema;
    KRVTSchemaDefinition* base = schema.BaseDefinition();
    if (base != nullptr) {
        base = EnsureSchema(*base);
        if (base == nullptr) return nullptr;
    }
    if (KRVTSchemaDefinition* const own = schemas_->FindOwn(schema.Id())) return own;
    // A schema that waits for its base has none of its properties yet.
    if (base == nullptr && !schema.BaseId().empty()) return nullptr;
    const intrusive_ptr<KRVTSchemaDefinition> copy = CopySchema(schema);
    copy->SetBase(base);
    copy->SetLibrary(this);
    copy->SetSet(&host_.Schemas());
    const nuo::string id = schema.Id();
    copy->Enter(namespaces_.schema, id);
    copy->SetPinned(true);
    layouts_.insert_or_assign(id, RecordLayout(*copy));
    return copy.get();
}

void GeneralLibrary::RebuildSharedAssets() {
    for (const nuo::string& name : RecordNames())
        shared_.Enter(SharedEntry(LoadRecord(*FindRecord(name))));
}

SharedAssets::Entry GeneralLibrary::SharedEntry(const PropertyTableImp& table) const {
    return {TextOf(table, asset_meta::kAssetType), TextOf(table, asset_meta::kUiName), table.Name(),
            TextsOf(table, "physmat_aspects")};
}

}  // namespace korvanet::platform::assets
