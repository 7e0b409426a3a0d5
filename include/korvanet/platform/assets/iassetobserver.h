#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

namespace korvanet::platform::assets {

/// Hears of the changes of an instance (`IAssetInstance::AddObserver`), after they have happened,
/// on the thread that made them. New values are told of public properties alone, new connections of
/// every property. An observer must not add or remove observers of the instance from inside a call.
class IAssetObserver {
public:
    /// The value of `property` was set.
    virtual void OnValueChanged(IPropertyTable::IProperty* property) = 0;

    /// The assets connected to `property` are others than before.
    virtual void OnConnectionChanged(IPropertyTable::IProperty* property) = 0;

    /// A meta value was changed through the instance: UI name, keywords, categories, description,
    /// swatch, thumbnail or version GUID.
    virtual void OnAssetChanged() = 0;

    virtual ~IAssetObserver() = default;
};

}  // namespace korvanet::platform::assets
