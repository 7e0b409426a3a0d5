#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/manager/filestate.h"
#include "nuo/common/file_archive.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kSearchFolderExtension{".qmm"};

}  // namespace

nuo::string SearchFolderOf(nuo::string_ref library_path) {
    const nuo::string_ref leaf = LeafOfPath(library_path);
    const std::uint64_t dot = leaf.rfind('.');
    const std::uint64_t extension =
        dot == nuo::string_ref::npos || dot == 0 ? 0 : leaf.size() - dot;
    return {library_path.substr(0, library_path.size() - extension), kSearchFolderExtension};
}

IAssetLibrary* AssetLibraryManager::OpenLibrary(const IString& path) {
    return Open(path.AsUTF8(), LibraryMode::kInPlace, false);
}

IAssetLibrary* AssetLibraryManager::OpenLibraryForWriting(const IString& path) {
    if (IsReadOnlyFile(WithSlashes(path.AsUTF8()))) {
        HalvernError("Cannot open a read-only asset library for writing.").Deliver();
        return nullptr;
    }
    return Open(path.AsUTF8(), LibraryMode::kInPlace, true);
}

IAssetLibrary* AssetLibraryManager::OpenLibraryCopy(const IString& path) {
    return Open(path.AsUTF8(), LibraryMode::kCopy, false);
}

IAssetLibrary* AssetLibraryManager::OpenLibraryCopyForWriting(const IString& path) {
    return Open(path.AsUTF8(), LibraryMode::kCopy, true);
}

IAssetLibrary* AssetLibraryManager::Open(nuo::string_ref path, LibraryMode mode, bool for_writing) {
    return Guarded(nullptr, [&]() -> AssetLibrary* {
        const nuo::string normalized = NormalizePath(path);
        if (!IsAbsolutePath(normalized) || !PathExists(normalized)) return nullptr;
        AssetLibrary* library = libraries_.FindByPath(normalized);
        if (library != nullptr) {
            if (for_writing && library->IsReadOnly()) return nullptr;
        } else {
            library = OpenNew(normalized, mode, for_writing);
            if (library == nullptr) return nullptr;
        }
        library->AddUse();
        return library;
    });
}

AssetLibrary* AssetLibraryManager::OpenNew(const nuo::string& path, LibraryMode mode,
                                           bool for_writing) {
    auto library = std::make_unique<AssetLibrary>(
        *this, slib_, AssetLibrary::Opening{path, mode, for_writing, !IsReadOnlyFile(path)});
    if (for_writing && library->IsReadOnly()) return nullptr;
    if (libraries_.FindByIdentifier(library->Identifier()) != nullptr) return nullptr;
    AddSearchPaths(path);
    AssetLibrary& added = libraries_.Add(std::move(library));
    RegisterMessages(added);
    return &added;
}

void AssetLibraryManager::AddSearchPaths(const nuo::string& library_path) {
    const nuo::string folder = SearchFolderOf(library_path);
    if (IsFolder(folder)) resolver_.Add(folder);
    if (!locations_.TexturePath().empty()) resolver_.Add(locations_.TexturePath());
}

void AssetLibraryManager::RegisterMessages(AssetLibrary& library) {
    const nuo::string_ref file = LeafOfPath(library.Path());
    if (file.empty()) return;
    auto folder = std::make_shared<velmor::fs::LocalFs>(nuo::string(FolderOfPath(library.Path())));
    if (localization_.RegisterSource(folder, file, library.Identifier()))
        library.KeepMessages(std::move(folder));
}

// Stands beside the open libraries and tells none of them.
bool AssetLibraryManager::IsLibraryUpgradeRequired(const IString& path) {
    const nuo::string normalized = NormalizePath(path.AsUTF8());
    ZipLayer layer(nuo::archive::make_archive<nuo::archive::file_read_archive>(normalized),
                   "library r/w", normalized);
    JpkFs package(layer.zip, normalized);
    const GeneralLibrary document(*this, package, slib_, GeneralLibrary::Reading{});
    return document.GetLayout() == GeneralLibrary::Layout::kLegacyUpgrade;
}

}  // namespace korvanet::platform::assets
