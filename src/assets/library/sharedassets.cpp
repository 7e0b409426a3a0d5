#include "assets/library/sharedassets.h"

#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kSharedTypes[] = {"physicalmaterial", "texture"};

bool Insert(SharedAssets::Index& index, const nuo::string& key, nuo::string_ref identifier) {
    return index[key].insert(nuo::string(identifier)).second;
}

bool Erase(SharedAssets::Index& index, nuo::string_ref key, nuo::string_ref identifier) {
    const auto found = index.find(key);
    if (found == index.end()) return false;
    const auto member = found->second.find(identifier);
    if (member == found->second.end()) return false;
    found->second.erase(member);
    if (found->second.empty()) index.erase(found);
    return true;
}

SharedAssets::Identifiers Find(const SharedAssets::Index& index, nuo::string_ref key) {
    const auto found = index.find(key);
    return found == index.end() ? SharedAssets::Identifiers() : found->second;
}

// Everything under the keys of one type: those that begin with the type and ":".
SharedAssets::Identifiers FindOfType(const SharedAssets::Index& index, nuo::string_ref type) {
    SharedAssets::Identifiers all;
    const nuo::string prefix = SharedAssets::Key(type, {});
    for (auto at = index.lower_bound(prefix.ref());
         at != index.end() && at->first.ref().starts_with(prefix); ++at)
        all.insert(at->second.begin(), at->second.end());
    return all;
}

void EraseEverywhere(SharedAssets::Index& index, nuo::string_ref identifier) {
    for (auto at = index.begin(); at != index.end();) {
        const auto member = at->second.find(identifier);
        if (member != at->second.end()) at->second.erase(member);
        at = at->second.empty() ? index.erase(at) : std::next(at);
    }
}

}  // namespace

bool SharedAssets::IsShared(nuo::string_ref asset_type) {
    for (nuo::string_ref type : kSharedTypes)
        if (type == asset_type) return true;
    return false;
}

nuo::string SharedAssets::Key(nuo::string_ref asset_type, nuo::string_ref name) {
    nuo::string_builder key;
    key.append(asset_type).append(':').append(name);
    return nuo::string(key);
}

void SharedAssets::Clear() {
    by_name_.clear();
    by_ui_name_.clear();
    by_type_.clear();
    counts_.clear();
    tag_ = nuo::string();
}

void SharedAssets::Enter(const Entry& entry) {
    CountAspects(entry, true);
    if (!IsShared(entry.asset_type)) return;
    const nuo::string key = Key(entry.asset_type, entry.ui_name);
    Insert(by_name_, key, entry.identifier);
    Insert(by_ui_name_, key, entry.identifier);
    Insert(by_type_, Key(entry.asset_type, {}), entry.identifier);
}

void SharedAssets::Leave(const Entry& entry) {
    CountAspects(entry, false);
    if (!IsShared(entry.asset_type)) return;
    EraseEverywhere(by_name_, entry.identifier);
    EraseEverywhere(by_ui_name_, entry.identifier);
    EraseEverywhere(by_type_, entry.identifier);
}

bool SharedAssets::AddName(nuo::string_ref asset_type, nuo::string_ref name,
                           nuo::string_ref identifier) {
    return Insert(by_name_, Key(asset_type, name), identifier);
}

bool SharedAssets::RemoveName(nuo::string_ref asset_type, nuo::string_ref name) {
    const auto found = by_name_.find(Key(asset_type, name));
    if (found == by_name_.end()) return false;
    by_name_.erase(found);
    return true;
}

bool SharedAssets::Share(const Entry& entry) {
    return AddName(entry.asset_type, entry.ui_name, entry.identifier);
}

bool SharedAssets::Unshare(const Entry& entry) {
    return Erase(by_name_, Key(entry.asset_type, entry.ui_name), entry.identifier);
}

SharedAssets::Identifiers SharedAssets::ByName(nuo::string_ref asset_type,
                                               nuo::string_ref name) const {
    return Find(by_name_, Key(asset_type, name));
}

SharedAssets::Identifiers SharedAssets::ByNameOfType(nuo::string_ref asset_type) const {
    return FindOfType(by_name_, asset_type);
}

SharedAssets::Identifiers SharedAssets::ByUiName(nuo::string_ref asset_type,
                                                 nuo::string_ref name) const {
    return Find(by_ui_name_, Key(asset_type, name));
}

SharedAssets::Identifiers SharedAssets::ByUiNameOfType(nuo::string_ref asset_type) const {
    return FindOfType(by_ui_name_, asset_type);
}

SharedAssets::Identifiers SharedAssets::ByType(nuo::string_ref asset_type) const {
    return Find(by_type_, Key(asset_type, {}));
}

std::uint64_t SharedAssets::Count(nuo::string_ref name) const {
    const auto found = counts_.find(name);
    return found == counts_.end() ? 0 : found->second;
}

void SharedAssets::CountAspects(const Entry& entry, bool up) {
    for (const nuo::string& name : entry.aspects) {
        if (name.empty()) continue;
        if (up) {
            ++counts_[name];
            continue;
        }
        const auto found = counts_.find(name);
        if (found != counts_.end() && --found->second == 0) counts_.erase(found);
    }
}

}  // namespace korvanet::platform::assets
