#pragma once

#include <cstdint>

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetinstance.h>

#include "assets/asset/assetadaptor.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

class AssetInstance;

/** An asset as a library stores it. A library pins what it owns, so references never destroy it. */
class AssetDefinition final : public AssetAdaptor<IAssetDefinition> {
public:
    AssetDefinition(HalvernAsset& holder, const ModuleContext& context);
    ~AssetDefinition() override;

    void Release() override;
    bool GetName(IString& name) const override;
    bool GetAssetType(IString& assetType) const override;
    std::int32_t GetVersion() const override;
    std::int32_t GetRevision() const override;
    bool IsHidden() const override;
    bool GetAssetLibID(IString& identifier) const override;
    IAssetInstance* CreateInstance() override;
    IAssetDefinition* AddReference() override;

    /**
     * An instance that is entered in `registry`, or nowhere when that is invalid; one reference for
     * the caller. Null when connected assets reach too deep.
     */
    AssetInstance* CreateInstanceIn(velmor::Namespace registry);
};

/**
 * A definition with the defaults of the schema, counted by nobody yet. It shares the read-only
 * group with the schema, which is its base and source. With a valid `registry` it is entered there
 * under `id`, which must be free; an empty id becomes a fresh one.
 */
AssetDefinition& MakeDefinition(KRVTSchemaDefinition& schema, velmor::Namespace registry,
                                const nuo::string& id);

}  // namespace korvanet::platform::assets
