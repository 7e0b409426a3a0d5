#pragma once

#include <cstdint>

#include "assets/property/intrusive.h"
#include "assets/property/propertytable.h"
#include "nuo/common/string.h"
#include "velmor/type_methods.h"

namespace korvanet::platform::assets {

// One element of a property's "link" array: an asset that is connected to the property.
struct AssetConnection {
    // The connected table's qualified name.
    nuo::string link;
    intrusive_ptr<PropertyTableImp> data;
    std::uint64_t reserved = 0;
};

// The data of a texture value, and a place for links to properties. Neither is ever stored.
struct AssetSymbolLink {
    nuo::string link;
};
struct PropertySymbolLink {
    nuo::string link;
};

// By what they link to; found by the methods of their types.
int compareNative(const AssetConnection& left, const AssetConnection& right);
int compareNative(const AssetSymbolLink& left, const AssetSymbolLink& right);
int compareNative(const PropertySymbolLink& left, const PropertySymbolLink& right);

// The methods of the reflected type `AssetConnection`. Its stored form is one string; what it says
// is up to the IConnectionCodec in force.
const velmor::TypeMethods& AssetConnectionMethods();

}  // namespace korvanet::platform::assets
