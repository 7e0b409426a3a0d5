#pragma once

#include <vector>

#include "assets/property/modulecontext.h"
#include "assets/schema/ischemaset.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

class ILegacyContent;
class KRVTSchemaDefinition;

// What a library document needs of the manager that opens it.
class ILibraryHost {
public:
    virtual const ModuleContext& Context() = 0;

    // The schemas that all libraries share.
    virtual ISchemaSet& Schemas() = 0;
    // Gives each of the schemas a twin in the shared set, bases first and none twice. Those that do
    // not fit what is there, and those that derive from them, are left out.
    virtual void PromoteSchemas(const std::vector<KRVTSchemaDefinition*>& schemas) = 0;

    // The private temporary folder of the process, made on first need. Raises when it cannot be
    // made.
    virtual velmor::fs::IVfs& TempFs() = 0;

    // The normalized path of the file or folder that a name means, by the search paths and
    // resolvers; empty when none.
    virtual nuo::string ResolvePath(nuo::string_ref name) = 0;

    // A part of another open library, named by its path inside that library's package; null when
    // there is none.
    virtual nuo::archive::archive_ptr OpenForeignPart(nuo::string_ref path) = 0;

    // Reader and writer of the older layout; null when there are none.
    virtual ILegacyContent* Legacy() = 0;

protected:
    ~ILibraryHost() = default;
};

}  // namespace korvanet::platform::assets
