#pragma once

#include <korvanet/platform/assets/ischemabatchloader.h>

#include "assets/property/modulecontext.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/schemamanager.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

/**
 * Loads schemas into a namespace of its own below ".usr", so that they stay out of the global set
 * until they are committed together.
 */
class SchemaBatchLoader final : public ISchemaBatchLoader {
public:
    /** `global` is the set that a commit goes to. The loader must end before it does. */
    SchemaBatchLoader(const ModuleContext& context, SchemaManager& global, ISchemaSet* set);
    ~SchemaBatchLoader() override;

    IAssetSchema* LoadSchema(core::IDataReader* stream) override;
    bool Commit() override;
    void Release() override;

private:
    void RemoveStore();

    const ModuleContext& context_;
    SchemaManager& global_;
    velmor::Namespace parent_;
    velmor::Namespace namespace_;
    SchemaManager store_;
    bool spent_ = false;
};

}  // namespace korvanet::platform::assets
