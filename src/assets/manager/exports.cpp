#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/assets/ipropertytable.h>
#include <korvanet/platform/assets/ischemabatchloader.h>

#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/guarded.h"
#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/schema/schemabatchloader.h"

// What hosts call without an object in hand. Each makes the manager first; null means that it, or
// the object, could not be made.

namespace korvanet::platform::assets {

const wchar_t* const IAssetLibraryManager::kSystemLibraryIdentifier =
    L"314DE259-5443-4621-BFBD-1730C6CC9AE9";
const wchar_t* const IAssetLibraryManager::kSystemPhysicalLibraryIdentifier =
    L"AD121259-C03E-4A1D-92D8-59A22B4807AD";

IAssetLibraryManager* GetIAssetLibraryManager() {
    return Guarded(nullptr, [] { return &AssetLibraryManager::Instance(); });
}

ISchemaBatchLoader* ISchemaBatchLoader::Create() {
    return Guarded(nullptr, [] {
        AssetLibraryManager& manager = AssetLibraryManager::Instance();
        return new SchemaBatchLoader(manager.Context(), manager.GlobalSchemas(), &manager);
    });
}

IBounds* IBounds::Create(bool hasMinimum, double minimum, bool minimumIsInclusive, bool hasMaximum,
                         double maximum, bool maximumIsInclusive, double incrementSize,
                         bool isPercentage) {
    return Guarded(nullptr, [&] {
        AssetLibraryManager::Instance();
        return MakeBounds(hasMinimum, minimum, minimumIsInclusive, hasMaximum, maximum,
                          maximumIsInclusive, incrementSize, isPercentage);
    });
}

IChoice* IChoice::Create(const IString& label, std::int32_t value, const IString& id) {
    return Guarded(nullptr, [&] {
        AssetLibraryManager::Instance();
        return MakeChoice(label, value, id);
    });
}

IChoiceList* IChoiceList::Create() {
    return Guarded(nullptr,
                   [] { return MakeChoiceList(&AssetLibraryManager::Instance().Context()); });
}

}  // namespace korvanet::platform::assets
