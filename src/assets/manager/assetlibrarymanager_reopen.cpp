#include <utility>

#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/report.h"
#include "assets/manager/filestate.h"

namespace korvanet::platform::assets {

IAssetLibrary* AssetLibraryManager::ReopenForWriting(IAssetLibrary** library) {
    AssetLibrary* const own = library != nullptr ? libraries_.Find(*library) : nullptr;
    if (own == nullptr) return nullptr;
    if (own->Document().IsReadOnlyOption() || IsReadOnlyFile(libraries_.PathOf(*own))) {
        HalvernError("Cannot reopen a read-only asset library for writing.").Deliver();
        return nullptr;
    }
    return own->TakeWriteAccess() ? std::exchange(*library, nullptr) : nullptr;
}

IAssetLibrary* AssetLibraryManager::ReopenForReading(IAssetLibrary** library) {
    AssetLibrary* const own = library != nullptr ? libraries_.Find(*library) : nullptr;
    if (own == nullptr) return nullptr;
    return own->GiveUpWriteAccess() ? std::exchange(*library, nullptr) : nullptr;
}

}  // namespace korvanet::platform::assets
