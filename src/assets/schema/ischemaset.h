#pragma once

#include <cstdint>

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

class KRVTSchemaDefinition;
class PropertyBase;

/** What schemas need of the manager that keeps the global set of schemas. The manager supplies it.
 */
class ISchemaSet {
public:
    /** The schema of that id in the global set, or null. */
    virtual KRVTSchemaDefinition* FindGlobalSchema(nuo::string_ref id) = 0;

    /**
     * A global schema has gained a property behind the back of the tables that were made from it.
     * They are to gain it too, unless it is read-only, since they share those.
     */
    virtual void PropertyAdded(KRVTSchemaDefinition& schema, const PropertyBase& property) = 0;

protected:
    ~ISchemaSet() = default;
};

/** Version of the files that a library was read from, as two pairs of major and minor. */
struct LibraryFormat {
    std::int32_t contentsMajor = 0;
    std::int32_t contentsMinor = 0;
    std::int32_t definitionMajor = 0;
    std::int32_t definitionMinor = 0;

    friend bool operator==(const LibraryFormat&, const LibraryFormat&) = default;
};

/** The library that holds a schema; merges ask it how old its files are. */
class ISchemaLibrary {
public:
    virtual LibraryFormat Format() const = 0;

protected:
    ~ISchemaLibrary() = default;
};

}  // namespace korvanet::platform::assets
