#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "assets/manager/assetlibrary.h"

namespace korvanet::platform::assets {

// The open libraries, which it owns: in order of opening, by normalized path and by identifier.
class LibraryTable {
public:
    LibraryTable() = default;
    LibraryTable(const LibraryTable&) = delete;
    LibraryTable& operator=(const LibraryTable&) = delete;
    ~LibraryTable() { Clear(); }

    std::size_t Count() const { return list_.size(); }
    // REQUIRES: index < Count().
    AssetLibrary* At(std::size_t index) const { return list_[index].get(); }
    AssetLibrary* FindByPath(nuo::string_ref path) const;
    AssetLibrary* FindByIdentifier(nuo::string_ref identifier) const;
    // The library behind a host's pointer, which may be any address; null when it is not open.
    AssetLibrary* Find(const IAssetLibrary* library) const;
    // The path that a library stands under; empty when it stands under none.
    nuo::string PathOf(const AssetLibrary& library) const;

    AssetLibrary& Add(std::unique_ptr<AssetLibrary> library);
    // Takes the library out, with every entry under its path and identifier, and gives it to the
    // caller.
    std::unique_ptr<AssetLibrary> Remove(AssetLibrary& library);
    // Destroys all, the one opened last first.
    void Clear();

private:
    using Index = std::multimap<nuo::string, AssetLibrary*, nuo::string_less>;

    std::vector<std::unique_ptr<AssetLibrary>> list_;
    Index by_path_;
    Index by_identifier_;
};

}  // namespace korvanet::platform::assets
