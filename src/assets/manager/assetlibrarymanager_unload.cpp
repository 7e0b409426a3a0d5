#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/report.h"
#include "assets/manager/filestate.h"

namespace korvanet::platform::assets {

bool AssetLibraryManager::UnloadLibrary(IAssetLibrary* library) {
    AssetLibrary* const own = libraries_.Find(library);
    if (own == nullptr) return false;
    if (own->UseCount() < 1) {
        // "occured" is kept on purpose.
        HalvernWarn("A lifetime management error occured while unloading the library document")
            .Deliver();
        return true;
    }
    if (own->UseCount() == 1) {
        if (own->Document().HasOutstandingReferences()) return false;
        Close(*own);
        return true;
    }
    own->DropUse();
    return true;
}

void AssetLibraryManager::Close(AssetLibrary& library) {
    const nuo::string folder = SearchFolderOf(libraries_.PathOf(library));
    if (PathExists(folder)) resolver_.Remove(folder);
    localization_.UnregisterDomain(library.Identifier());
    const std::unique_ptr<AssetLibrary> removed = libraries_.Remove(library);
    removed->DropUse();
}

}  // namespace korvanet::platform::assets
