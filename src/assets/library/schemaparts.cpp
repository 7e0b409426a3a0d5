#include "assets/library/schemaparts.h"

#include <algorithm>

#include "assets/library/libraryparts.h"
#include "assets/library/schemapart.h"

namespace korvanet::platform::assets {

void SchemaParts::Add(const nuo::string& id, const nuo::string& part) {
    const nuo::string* const told = SchemaOf(part);
    if (told != nullptr && *told == id) return;
    Remove(part);
    const auto added = parts_.emplace(id, part);
    try {
        ids_.emplace(part, id);
    } catch (...) {
        parts_.erase(added);
        throw;
    }
}

const nuo::string* SchemaParts::SchemaOf(const nuo::string& part) const {
    const auto found = ids_.find(part);
    return found != ids_.end() ? &found->second : nullptr;
}

nuo::string SchemaParts::PartFor(const nuo::string& id) const {
    const auto first = parts_.lower_bound(id);
    const bool known = first != parts_.end() && first->first == id;
    return known && !CanNameSchemaPart(id) ? first->second : nuo::string(id, kSchemaExtension);
}

std::vector<nuo::string> SchemaParts::Others(const nuo::string& part) const {
    std::vector<nuo::string> others;
    const nuo::string* const id = SchemaOf(part);
    if (id == nullptr) return others;
    const auto [first, last] = parts_.equal_range(*id);
    for (auto at = first; at != last; ++at)
        if (!(at->second == part)) others.push_back(at->second);
    return others;
}

void SchemaParts::Remove(const nuo::string& part) {
    const auto told = ids_.find(part);
    if (told == ids_.end()) return;
    const auto [first, last] = parts_.equal_range(told->second);
    parts_.erase(std::find_if(first, last, [&](const auto& at) { return at.second == part; }));
    ids_.erase(told);
}

}  // namespace korvanet::platform::assets
