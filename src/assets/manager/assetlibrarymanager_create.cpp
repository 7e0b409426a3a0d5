#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/manager/filestate.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

IAssetLibrary* AssetLibraryManager::CreateLibrary(const IString& path, const IString& identifier,
                                                  unsigned options) {
    return Create(path.AsUTF8(), identifier.AsUTF8(), options, LibraryMode::kInPlace);
}

IAssetLibrary* AssetLibraryManager::CreateLibrary(const IString& path, unsigned options) {
    return Create(path.AsUTF8(), {}, options, LibraryMode::kInPlace);
}

IAssetLibrary* AssetLibraryManager::CreateLibraryCopy(const IString& path,
                                                      const IString& identifier, unsigned options) {
    return Create(path.AsUTF8(), identifier.AsUTF8(), options, LibraryMode::kCopy);
}

IAssetLibrary* AssetLibraryManager::Create(nuo::string_ref path, nuo::string_ref identifier,
                                           unsigned options, LibraryMode mode) {
    return Guarded(nullptr, [&]() -> AssetLibrary* {
        if (!IsAbsolutePath(path)) {
            HalvernError("The given URI is relative, only absolute paths are accepted").Deliver();
            return nullptr;
        }
        const nuo::string normalized = NormalizePath(path);
        if (RefusesCreation(normalized)) return nullptr;
        const nuo::string name = identifier.empty() ? MakeIdentifier() : nuo::string(identifier);
        // As in opening: two libraries of one identifier could not be told apart.
        if (libraries_.FindByIdentifier(name) != nullptr) return nullptr;
        AssetLibrary& library = libraries_.Add(std::make_unique<AssetLibrary>(
            *this, slib_, AssetLibrary::Creating{normalized, mode, name, options}));
        library.AddUse();
        return &library;
    });
}

bool AssetLibraryManager::RefusesCreation(const nuo::string& path) const {
    const nuo::string_ref folder = FolderOfPath(path);
    const char* reason = nullptr;
    if (libraries_.FindByPath(path) != nullptr)
        reason = "A library with this path already exists";
    else if (PathExists(path))
        reason = "A file with this path already exists";
    else if (!IsFolder(folder))
        reason = "Folder/directory does not already exist";
    else if (!CanCreateFilesIn(folder))
        reason = "Folder/directory is read-only";
    if (reason == nullptr) return false;
    HalvernError(reason).Deliver();
    return true;
}

}  // namespace korvanet::platform::assets
