#pragma once

#include "assets/property/itablefactory.h"

namespace korvanet::platform::assets {

class IGenericConverter;
class IUriLocator;

/** What instances need of the layers above. Each is null until somebody joins it. */
struct AssetServices {
    IGenericConverter* converter = nullptr;
    IUriLocator* files = nullptr;
};

/** Makes schemas, definitions and instances. It outlives the instances, which ask its services. */
class AssetTables final : public ITableFactory {
public:
    AssetServices services;

    PropertyTableImp* MakeTable(TableKind kind, HalvernAsset& holder,
                                const ModuleContext& context) override;
};

}  // namespace korvanet::platform::assets
