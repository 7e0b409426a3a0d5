#include "assets/asset/assettables.h"

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetinstance.h"
#include "assets/schema/schemadefinition.h"

namespace korvanet::platform::assets {

PropertyTableImp* AssetTables::MakeTable(TableKind kind, HalvernAsset& holder,
                                         const ModuleContext& context) {
    switch (kind) {
        case TableKind::kSchema:
            return new KRVTSchemaDefinition(holder, context);
        case TableKind::kDefinition:
            return new AssetDefinition(holder, context);
        default:
            return new AssetInstance(holder, context, services);
    }
}

}  // namespace korvanet::platform::assets
