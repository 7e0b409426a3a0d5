#pragma once

#include <korvanet/platform/core/utf8string.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assettables.h"
#include "assets/library/generallibrary.h"
#include "assets/library/ilibraryhost.h"
#include "assets/localization/localizationmanagerimp.h"
#include "assets/property/halverntypes.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "velmor/runtime.h"
#include "velmor/vfs/local_fs.h"

// A library document without a manager, for the tests of the library stratum and for the fuzz
// targets.

namespace korvanet::platform::assets {

// Everything that a library document needs of the manager, in its plainest form.
class TestHost final : public ILibraryHost, public ISchemaSet {
public:
    TestHost();
    ~TestHost();

    const ModuleContext& Context() override { return context; }
    ISchemaSet& Schemas() override { return *this; }
    void PromoteSchemas(const std::vector<KRVTSchemaDefinition*>& schemas) override;
    velmor::fs::IVfs& TempFs() override { return *temp; }
    nuo::string ResolvePath(nuo::string_ref name) override;
    nuo::archive::archive_ptr OpenForeignPart(nuo::string_ref path) override;
    ILegacyContent* Legacy() override { return legacy; }
    KRVTSchemaDefinition* FindGlobalSchema(nuo::string_ref id) override {
        return global->FindOwn(id);
    }
    void PropertyAdded(KRVTSchemaDefinition&, const PropertyBase&) override {}

    velmor::Namespace Slib() { return slib; }
    std::string Folder() const { return folder; }
    // Makes a file in the host's folder and gives its path.
    std::string MakeFile(const std::string& name, const std::string& content) const;

    velmor::Runtime runtime;
    ModuleContext context;
    AssetTables tables;
    ILocalizationManagerImp localization;
    velmor::Namespace slib;
    std::unique_ptr<SchemaManager> global;
    std::string folder;
    std::unique_ptr<velmor::fs::LocalFs> temp;
    // Search paths of ResolvePath.
    std::string search_path;
    // Other libraries that OpenForeignPart asks, by identifier.
    std::map<std::string, GeneralLibrary*> libraries;
    ILegacyContent* legacy = nullptr;
};

// Two schemas: CommonSchema, and PaintSchema with a number "p_depth", a URI "p_file", a list of
// textures "p_images" and a property "p_map" that takes several connected assets.
extern const char kCommonSchemaXml[];
extern const char kPaintSchemaXml[];

// The schema of that id in the host's global set, loaded from the text when it is not there. Null
// when it is bad.
KRVTSchemaDefinition* LoadGlobal(TestHost& host, const char* id, const char* xml);

}  // namespace korvanet::platform::assets
