#include "propertytext.h"

#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/ivalue.h>

#include <charconv>

#include "session.h"
#include "story.h"

namespace demo {

using namespace korvanet::platform::assets;

namespace {

constexpr std::uint32_t kMillimetres = 8206;
constexpr std::uint32_t kCentimetres = 8205;

// The shortest text that reads back to the same number, whatever locale is set.
std::string NumberText(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string UnitText(std::uint32_t code) {
    switch (code) {
        case kMillimetres:
            return " mm";
        case kCentimetres:
            return " cm";
        default:
            return "";
    }
}

std::string ChoiceText(const IChoiceListValue& value) {
    const IChoiceList* const choices = value.GetChoices();
    for (std::uint64_t i = 0; choices != nullptr && i < choices->GetCount(); ++i) {
        const IChoice* const choice = choices->GetChoice(i);
        if (choice->GetValue() != value.GetValue()) continue;
        UTF8String label;
        choice->GetLabel(label, L"ENG");
        return label.AsUTF8();
    }
    return "?";
}

std::string ColorText(const IColorValue& value) {
    double r = 0, g = 0, b = 0, a = 0;
    value.GetValue(r, g, b, a);
    return NumberText(r) + ", " + NumberText(g) + ", " + NumberText(b) + ", " + NumberText(a);
}

std::string ConnectedText(const IProperty& property) {
    const IAssetInstance* const asset = property.GetConnectedAsset(std::uint64_t{0});
    if (asset == nullptr) return "(nothing)";
    UTF8String name;
    asset->GetUIName(name, Text("ENG"));
    return name.AsUTF8();
}

}  // namespace

std::string LabelOf(const IProperty& property) {
    UTF8String label;
    property.GetLocalizedLabel(label, L"ENG");
    return label.AsUTF8();
}

// A choice is an integer too: the more special interface is asked for first.
std::string ValueOf(const IProperty& property) {
    const IValue* const value = property.GetValue();
    if (const auto* boolean = dynamic_cast<const IBooleanValue*>(value))
        return boolean->GetValue() ? "yes" : "no";
    if (const auto* choice = dynamic_cast<const IChoiceListValue*>(value))
        return ChoiceText(*choice);
    if (const auto* integer = dynamic_cast<const IIntegerValue*>(value))
        return std::to_string(integer->GetValue());
    if (const auto* scalar = dynamic_cast<const IScalarValue*>(value))
        return NumberText(scalar->GetValue()) + UnitText(scalar->GetUnits());
    if (const auto* color = dynamic_cast<const IColorValue*>(value)) return ColorText(*color);
    if (const auto* string = dynamic_cast<const IStringValue*>(value)) {
        UTF8String text;
        string->GetValue(text);
        return text.AsUTF8();
    }
    return ConnectedText(property);
}

std::string Describe(const IPropertyTable& table, const char* name) {
    const IProperty* const property = table.FindProperty(Wide(name).c_str());
    Require(property != nullptr, std::string("there is no property ") + name);
    return LabelOf(*property) + ": " + ValueOf(*property);
}

IProperty& PropertyOf(IPropertyTable& table, const char* name) {
    IProperty* const property = table.FindProperty(Wide(name).c_str());
    Require(property != nullptr, std::string("there is no property ") + name);
    return *property;
}

}  // namespace demo
