#include "assets/asset/assetdefinition.h"
#include "assets/library/definitioniterator.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"

namespace korvanet::platform::assets {

bool AssetLibrary::EnableSharedAsset(bool enable, const IString& tag) {
    SharedAssets& shared = Document().Shared();
    shared.SetEnabled(enable);
    if (!enable) {
        shared.Clear();
        shared_asset_enabled_ = false;
        return true;
    }
    const nuo::string text = ToUtf8(tag);
    if (!(shared.Tag() == text) && !IndexSharedAssets(text)) return false;
    shared_asset_enabled_ = true;
    return true;
}

// The index from nothing. When a definition cannot be read the mode is off.
bool AssetLibrary::IndexSharedAssets(nuo::string_ref tag) {
    SharedAssets& shared = Document().Shared();
    shared.Clear();
    shared.SetEnabled(true);
    shared.SetTag(tag);
    if (Guarded([this] { Document().RebuildSharedAssets(); })) return true;
    shared.Clear();
    shared.SetEnabled(false);
    shared_asset_enabled_ = false;
    return false;
}

bool AssetLibrary::RefusesSharing() const {
    if (IsReadOnly()) {
        HalvernError("Cannot edit a read-only AssetLibrary.").Deliver();
        return true;
    }
    if (!shared_asset_enabled_) {
        HalvernError("Please call EnableSharedAsset API first.").Deliver();
        return true;
    }
    return false;
}

bool AssetLibrary::AddSharedAsset(const IString& type, const IString& name,
                                  const IString& identifier) {
    if (RefusesSharing()) return false;
    if (name.IsEmpty()) {
        HalvernError("Empty Name is Not Allowed.").Deliver();
        return false;
    }
    return Document().Shared().AddName(ToUtf8(type), ToUtf8(name), ToUtf8(identifier));
}

bool AssetLibrary::RemoveSharedAsset(const IString& type, const IString& name) {
    return !RefusesSharing() && Document().Shared().RemoveName(ToUtf8(type), ToUtf8(name));
}

bool AssetLibrary::ShareDefinition(IAssetDefinition* definition) {
    if (RefusesSharing()) return false;
    const auto* const own = dynamic_cast<AssetDefinition*>(definition);
    return own != nullptr && Document().Shared().Share(Document().SharedEntry(*own));
}

bool AssetLibrary::UnshareDefinition(IAssetDefinition* definition) {
    if (RefusesSharing()) return false;
    const auto* const own = dynamic_cast<AssetDefinition*>(definition);
    return own != nullptr && Document().Shared().Unshare(Document().SharedEntry(*own));
}

IAssetDefinition::IIterator* AssetLibrary::ListPresent(
    const SharedAssets::Identifiers& identifiers) {
    return List([&] { return PresentDefinitions(Document(), identifiers); });
}

IAssetDefinition::IIterator* AssetLibrary::GetSharedDefinitionsByName(const IString& type,
                                                                      const IString& name) {
    return ListPresent(Document().Shared().ByName(ToUtf8(type), ToUtf8(name)));
}

IAssetDefinition::IIterator* AssetLibrary::GetSharedDefinitions(const IString& type) {
    return ListPresent(Document().Shared().ByNameOfType(ToUtf8(type)));
}

IAssetDefinition::IIterator* AssetLibrary::GetSharedDefinitionsByType(const IString& type,
                                                                      const IString& name) {
    return ListPresent(Document().Shared().ByUiName(ToUtf8(type), ToUtf8(name)));
}

IAssetDefinition::IIterator* AssetLibrary::GetSharedDefinitionsOfType(const IString& type) {
    return ListPresent(Document().Shared().ByUiNameOfType(ToUtf8(type)));
}

}  // namespace korvanet::platform::assets
