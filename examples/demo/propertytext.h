#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

#include <string>

namespace demo {

using korvanet::platform::assets::IProperty;
using korvanet::platform::assets::IPropertyTable;

/// "Tile width": the label of a property in English.
std::string LabelOf(const IProperty& property);

/// The value for people: "20 cm", "Matte", "0.9, 0.88, 0.84, 1", or the name of the connected
/// asset.
std::string ValueOf(const IProperty& property);

/// "Tile width 20 cm": both, of the property of that name. Throws a Failure when there is none.
std::string Describe(const IPropertyTable& table, const char* name);

/// The property of that name; throws a Failure when there is none.
IProperty& PropertyOf(IPropertyTable& table, const char* name);

}  // namespace demo
