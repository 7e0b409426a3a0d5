#include "assets/manager/librarytable.h"

#include <algorithm>

namespace korvanet::platform::assets {
namespace {

template <class Index>
AssetLibrary* FindIn(const Index& index, nuo::string_ref key) {
    const auto found = index.find(key);
    return found == index.end() ? nullptr : found->second;
}

}  // namespace

AssetLibrary* LibraryTable::FindByPath(nuo::string_ref path) const {
    return FindIn(by_path_, path);
}

AssetLibrary* LibraryTable::FindByIdentifier(nuo::string_ref identifier) const {
    return FindIn(by_identifier_, identifier);
}

AssetLibrary* LibraryTable::Find(const IAssetLibrary* library) const {
    const auto found = std::find_if(list_.begin(), list_.end(), [library](const auto& entry) {
        return static_cast<const IAssetLibrary*>(entry.get()) == library;
    });
    return found == list_.end() ? nullptr : found->get();
}

nuo::string LibraryTable::PathOf(const AssetLibrary& library) const {
    for (const auto& [path, entry] : by_path_)
        if (entry == &library) return path;
    return {};
}

AssetLibrary& LibraryTable::Add(std::unique_ptr<AssetLibrary> library) {
    AssetLibrary& added = *library;
    list_.push_back(std::move(library));
    by_path_.emplace(added.Path(), &added);
    by_identifier_.emplace(added.Identifier(), &added);
    return added;
}

std::unique_ptr<AssetLibrary> LibraryTable::Remove(AssetLibrary& library) {
    const auto entry = std::find_if(list_.begin(), list_.end(), [&library](const auto& held) {
        return held.get() == &library;
    });
    by_path_.erase(PathOf(library));
    by_identifier_.erase(library.Identifier());
    std::unique_ptr<AssetLibrary> removed = std::move(*entry);
    list_.erase(entry);
    return removed;
}

void LibraryTable::Clear() {
    by_path_.clear();
    by_identifier_.clear();
    while (!list_.empty())
        list_.pop_back();
}

}  // namespace korvanet::platform::assets
