#include "propertyjson.h"

#include <array>

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/core/stringalgorithm.h>
#include <korvanet/platform/core/utf8string.h>

#include "session.h"

namespace halvern {

using namespace korvanet::platform::assets;
using core::UTF8String;
using nlohmann::json;

namespace {

json Base64(const IBinaryValue& value) {
    UTF8String text;
    core::StringAlgorithm::Base64Encode(value.GetData(), value.GetSize(), text);
    return text.AsUTF8();
}

json TextAt(const IStringValue& value, std::uint64_t index, const std::string& locale) {
    UTF8String text;
    if (locale.empty())
        value.GetValue(text, index);
    else
        value.GetLocalizedValue(text, UTF8String(locale.c_str()).AsWide(), index);
    return text.AsUTF8();
}

json ColorAt(const IColorValue& value, std::uint64_t index) {
    std::array<double, 4> parts{};
    value.GetValue(parts[0], parts[1], parts[2], parts[3], index);
    return parts;
}

json ElementAt(const IValue& value, std::uint64_t index, const std::string& locale) {
    if (auto* text = dynamic_cast<const IStringValue*>(&value)) return TextAt(*text, index, locale);
    if (auto* boolean = dynamic_cast<const IBooleanValue*>(&value)) return boolean->GetValue(index);
    if (auto* integer = dynamic_cast<const IIntegerValue*>(&value)) return integer->GetValue(index);
    if (auto* scalar = dynamic_cast<const IScalarValue*>(&value)) return scalar->GetValue(index);
    if (auto* color = dynamic_cast<const IColorValue*>(&value)) return ColorAt(*color, index);
    if (auto* binary = dynamic_cast<const IBinaryValue*>(&value)) return Base64(*binary);
    return nullptr;
}

// Lists, and numbers of several parts.
bool IsArray(const IProperty& property, const IValue& value) {
    if ((property.GetFlags() & PropertyFlags::kAllowMultipleValues) != 0) return true;
    if (dynamic_cast<const ITextureURIValue*>(&value) != nullptr) return true;
    return property.GetType() == PropertyType::kScalar && value.GetDimension() != 1;
}

json ValueJson(const IProperty& property, const std::string& locale) {
    const IValue& value = *property.GetValue();
    if (dynamic_cast<const IReferenceValue*>(&value) != nullptr) return nullptr;
    if (!IsArray(property, value)) return ElementAt(value, 0, locale);
    json elements = json::array();
    for (std::uint64_t at = 0; at < value.GetDimension(); ++at)
        elements.push_back(ElementAt(value, at, locale));
    return elements;
}

json ConnectedJson(const IProperty& property) {
    json identifiers = json::array();
    for (std::uint64_t at = 0; at < property.GetConnectedAssetCount(); ++at) {
        UTF8String identifier;
        if (IAssetInstance* const asset = property.GetConnectedAsset(at))
            if (const HeldDefinition definition{asset->GetDefinition()})
                definition->GetName(identifier);
        identifiers.push_back(identifier.AsUTF8());
    }
    return identifiers;
}

}  // namespace

const char* TypeName(PropertyType type) {
    static constexpr std::array kNames{
        "kUnspecified", "kBinary", "kString",  "kDateTime", "kUri",  "kBoolean",  "kInteger",
        "kScalar",      "kColor",  "kTexture", "kChoice",   "kUuid", "kReference"};
    const auto at = static_cast<std::size_t>(type);
    return at < kNames.size() ? kNames[at] : kNames[0];
}

json PropertyJson(const IProperty& property, const std::string& locale) {
    json member{{"type", TypeName(property.GetType())},
                {"flags", property.GetFlags()},
                {"value", ValueJson(property, locale)}};
    // The flag also stands where a value of another class carries none.
    if (const std::uint32_t units = property.GetValue()->GetUnits(); units != 0)
        member["units"] = units;
    if ((property.GetFlags() & PropertyFlags::kConnectionMask) != 0)
        member["connected"] = ConnectedJson(property);
    return member;
}

json PropertiesJson(const IAssetInstance& asset, const std::string& locale) {
    json properties = json::object();
    core::IEnumeration<const IProperty*>* const walk = asset.GetProperties(false);
    for (const IProperty* property = walk->First(); walk->IsValid();
         walk->Next(), property = walk->Current()) {
        UTF8String name;
        property->GetName(name);
        properties[name.AsUTF8()] = PropertyJson(*property, locale);
    }
    asset.ReleaseEnumeration(walk);
    return properties;
}

}  // namespace halvern
