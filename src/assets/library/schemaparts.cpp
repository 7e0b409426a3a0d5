#include "assets/library/schemaparts.h"

#include "assets/library/libraryparts.h"
#include "assets/library/schemapart.h"

namespace korvanet::platform::assets {

void SchemaParts::Add(const nuo::string& id, const nuo::string& part) {
    parts_.emplace(id, part);
    ids_.insert_or_assign(part, id);
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

std::vector<nuo::string> SchemaParts::KeepOnly(const nuo::string& id, const nuo::string& part) {
    std::vector<nuo::string> others;
    const auto [first, last] = parts_.equal_range(id);
    for (auto at = first; at != last; ++at) {
        // The part may have come to tell another schema.
        const auto told = ids_.find(at->second);
        if (at->second == part || told == ids_.end() || !(told->second == id)) continue;
        others.push_back(at->second);
        ids_.erase(told);
    }
    parts_.erase(first, last);
    Add(id, part);
    return others;
}

}  // namespace korvanet::platform::assets
