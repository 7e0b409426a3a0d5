#pragma once

#include <korvanet/platform/assets/iassetinstance.h>

namespace korvanet::platform::assets {

class AssetInstance;

/** Turns a material into one of the common generic schema. The binding tables supply it. */
class IGenericConverter {
public:
    /** One reference for the caller; null when nothing tells how to convert the asset. */
    virtual IAssetInstance* Convert(AssetInstance& asset) = 0;

protected:
    ~IGenericConverter() = default;
};

}  // namespace korvanet::platform::assets
