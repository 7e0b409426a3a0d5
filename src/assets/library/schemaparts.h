#pragma once

#include <map>
#include <vector>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Which parts of a library's package tell which of its schemas, by the names of the parts in their
// folder and the ids of the schemas. What a part tells is said by its content, so that a part may
// have the name that follows from the id of another schema, and a schema may have several parts.
class SchemaParts {
public:
    // A part that told another schema tells this one from now on.
    void Add(const nuo::string& id, const nuo::string& part);
    // The schema that the part tells, or null.
    const nuo::string* SchemaOf(const nuo::string& part) const;
    // The part that a schema is to be written to. One whose id can name no part keeps the one that
    // it came from.
    nuo::string PartFor(const nuo::string& id) const;
    // The other parts that tell the schema that `part` does.
    std::vector<nuo::string> Others(const nuo::string& part) const;
    void Remove(const nuo::string& part);

private:
    std::multimap<nuo::string, nuo::string, nuo::string_less> parts_;  // by id, in order of coming
    std::map<nuo::string, nuo::string, nuo::string_less> ids_;         // by part
};

}  // namespace korvanet::platform::assets
