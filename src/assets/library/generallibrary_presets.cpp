#include <algorithm>
#include <set>

#include "assets/asset/assetdefinition.h"
#include "assets/library/assetcopier.h"
#include "assets/library/generallibrary.h"
#include "assets/library/storedgroups.h"
#include "assets/library/tabletext.h"
#include "assets/manager/base/report.h"
#include "assets/property/fixedproperties.h"

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
    std::vector<nuo::string> fresh;
    return StorePreset(source, identifier, values, fresh);
}

AssetDefinition* GeneralLibrary::StorePreset(PropertyTableImp& source, nuo::string_ref identifier,
                                             const std::vector<PresetValue>& values,
                                             std::vector<nuo::string>& fresh) {
    SharedAssets::Entry former;
    HalvernAsset* const present = FindRecord(identifier);
    if (shared_.Enabled() && present != nullptr) former = SharedEntry(LoadRecord(*present));
    PropertyTableImp* const made = AssetCopier(*this, fresh).Copy(source, identifier);
    if (made == nullptr) return nullptr;
    for (const PresetValue& value : values)
        SetValue(*made, value);
    if (shared_.Enabled()) {
        if (present != nullptr) {
            shared_.Leave(former);
            shared_.Enter(SharedEntry(*made));
        }
        for (const nuo::string& name : fresh)
            shared_.Enter(SharedEntry(*FindRecord(name)->table));
    }
    auto& definition = static_cast<AssetDefinition&>(*made);
    definition.SetAssetLibId(identifier_);
    return &definition;
}

AssetDefinition* GeneralLibrary::CopyDefinition(PropertyTableImp& source,
                                                nuo::string_ref identifier) {
    std::vector<nuo::string> fresh;
    AssetDefinition* const made = StorePreset(source, identifier, {}, fresh);
    if (made == nullptr) return nullptr;
    try {
        // The files must be at hand when the source's library is gone, so they come now and not at
        // the save.
        ImportFiles(*FindRecord(identifier)->table);
    } catch (...) {  // what was not there before is not there now
        if (std::find(fresh.begin(), fresh.end(), identifier) != fresh.end()) DropRecords(fresh);
        throw;
    }
    return made;
}

// None of them has blocks yet. They may be connected with each other.
void GeneralLibrary::DropRecords(const std::vector<nuo::string>& names) {
    std::vector<intrusive_ptr<PropertyTableImp>> dropped;
    for (const nuo::string& name : names)
        dropped.emplace_back(FindRecord(name)->table);
    for (const auto& table : dropped) {
        if (shared_.Enabled()) shared_.Leave(SharedEntry(*table));
        table->ClearOwnConnections();
        Detach(*table);
    }
    ++generation_;
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
    ForEachUri(table, [&](PropertyBase& uri) { resources_->Rewrite(uri, table.Name()); });
}

bool GeneralLibrary::RemovePreset(PropertyTableImp& definition) {
    if (!(TextOf(definition, fixed_property::kAssetLibId) == identifier_) ||
        !IsRecord(definition)) {
        HalvernError("The Preset doesn't belong to this library.").Deliver();
        return false;
    }
    if (layout_ == Layout::kCurrent && (!definition_store_ || !instance_store_))
        NUO_RAISE(JpkFsErr);
    HalvernAsset& record = definition.Holder();
    if (shared_.Enabled()) shared_.Leave(SharedEntry(LoadRecord(record)));
    FreeBlocks(record);
    Detach(definition);
    ++generation_;
    return true;
}

void GeneralLibrary::RebuildSharedAssets() {
    for (const nuo::string& name : RecordNames())
        shared_.Enter(SharedEntry(LoadRecord(*FindRecord(name))));
}

SharedAssets::Entry GeneralLibrary::SharedEntry(const PropertyTableImp& table) const {
    return {TextOf(table, fixed_property::kAssetType), TextOf(table, fixed_property::kUiName),
            table.Name(), TextsOf(table, "physmat_aspects")};
}

}  // namespace korvanet::platform::assets
