#pragma once

#include <string>

#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/ivalue.h>
#include <nlohmann/json.hpp>

namespace halvern {

// The name of a kind of properties, such as "kScalar".
const char* TypeName(korvanet::platform::assets::PropertyType type);

// One property as `show --json` has it; texts for `locale`, or as they are stored when it is empty.
nlohmann::json PropertyJson(const korvanet::platform::assets::IProperty& property,
                            const std::string& locale);

// All properties of an asset, by name.
nlohmann::json PropertiesJson(const korvanet::platform::assets::IAssetInstance& asset,
                              const std::string& locale);

}  // namespace halvern
