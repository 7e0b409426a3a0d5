#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "assets/asset/assettables.h"
#include "assets/library/recordform.h"
#include "assets/library/recordlayout.h"
#include "assets/property/modulecontext.h"
#include "assets/property/propertyfactory.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "inspect/findings.h"
#include "inspect/packageparts.h"
#include "velmor/runtime.h"

namespace halvern::inspect {

// How the records of one schema lie in the stores, with a property of each kind to read them into.
struct SchemaShape {
    struct Item {
        korvanet::platform::assets::RecordLayout::Item item;
        korvanet::platform::assets::OwnedProperty property;
    };

    const korvanet::platform::assets::KRVTSchemaDefinition* schema = nullptr;
    // In the order of the groups that records hold; without what the form leaves out.
    std::vector<Item> instance;
    std::vector<Item> listing;
};

// The schemas of one library, in a runtime of their own: what the process has loaded otherwise has
// no say in whether the file is whole.
class SchemaCheck {
public:
    SchemaCheck();
    ~SchemaCheck();

    // Loads every schema of the library and finds those that do not load, whose base is missing, or
    // that reports were made of.
    void Load(PackageParts& parts, Findings& findings);

    // Is it known that the schema stands in the library and cannot be used?
    bool IsBroken(nuo::string_ref id) const { return broken_.find(id) != broken_.end(); }
    // Null for a schema that the library does not hold.
    const SchemaShape* Find(nuo::string_ref id, const korvanet::platform::assets::RecordForm& form);
    std::vector<const korvanet::platform::assets::KRVTSchemaDefinition*> All() const;
    // The form of the library's records: `has_base_schema` is told by its common schema.
    bool HoldsBaseSchema() const;
    const korvanet::platform::assets::ModuleContext& Context() const { return context_; }

private:
    void LoadPart(PackageParts& parts, const std::string& name, Findings& findings);
    void CheckProperties(PackageParts& parts, const std::string& path,
                         const korvanet::platform::assets::KRVTSchemaDefinition& schema,
                         const std::vector<std::string>& reports, Findings& findings);
    void FindPending(Findings& findings);

    nuo::plain_heap heap_;
    velmor::Runtime runtime_;
    korvanet::platform::assets::AssetTables tables_;
    korvanet::platform::assets::ModuleContext context_;
    std::unique_ptr<korvanet::platform::assets::SchemaManager> schemas_;
    // Schemas by the part that they came from.
    std::map<std::string, const korvanet::platform::assets::KRVTSchemaDefinition*> loaded_;
    std::set<nuo::string, nuo::string_less> broken_;
    std::map<nuo::string, SchemaShape, nuo::string_less> shapes_;
};

}  // namespace halvern::inspect
