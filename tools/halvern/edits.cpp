#include "edits.h"

#include <string_view>
#include <utility>

#include <korvanet/platform/core/utf8string.h>

#include "failure.h"
#include "library.h"
#include "valuetext.h"

namespace halvern {

using core::UTF8String;

namespace {

// Refused by the parser, so that a wrong form is wrong usage.
std::string CheckForm(const std::string& text, const std::string& form) {
    const std::size_t sign = text.find('=');
    return sign == std::string::npos || sign == 0 ? "\"" + text + "\" is not of the form " + form
                                                  : "";
}

constexpr const char* kSetForm = "NAME=VALUE";
constexpr const char* kConnectForm = "NAME=IDENTIFIER";

std::pair<std::string, std::string> Halves(const std::string& text) {
    const std::size_t sign = text.find('=');
    return {text.substr(0, sign), text.substr(sign + 1)};
}

assets::IProperty& Find(assets::IAssetInstance& asset, const std::string& name) {
    assets::IProperty* const property = asset.FindProperty(UTF8String(name.c_str()).AsWide());
    if (property == nullptr) throw Failure(kNo, "there is no property " + name);
    return *property;
}

// A library writes these itself when it stores a definition; a value would be lost without a word.
void RefuseOwn(const std::string& name) {
    for (const std::string_view own : {"AssetLibID", "BaseSchema", "Hidden"})
        if (name == own)
            throw Failure(kNo, "the property " + name + " is written by the library itself");
}

void Connect(assets::IProperty& property, const std::string& name, const std::string& identifier,
             assets::IAssetLibrary& library, const std::string& file) {
    ReportLog reports;
    if (identifier.empty()) {
        if (!property.ConnectAsset(nullptr))
            throw Failure(kNo, "the property " + name + " takes no connections");
        return;
    }
    const HeldDefinition definition = FindDefinition(library, identifier, file);
    const HeldInstance connected = Instantiate(*definition.Get(), identifier, file);
    if (!property.ConnectAsset(connected.Get()))
        throw Failure(kNo, reports.LastOr("the property " + name + " takes no connections"));
}

}  // namespace

void AddEdits(CLI::App& command, Edits& edits) {
    command
        .add_option(
            "--set", edits.sets,
            "NAME=VALUE: give a property a value, such as 0.5, \"2.5 mm\", true, the id of a "
            "choice, 0.9,0.9,0.85 for a colour, one,two for a list, @FILE for bytes; can be "
            "repeated")
        ->allow_extra_args(false)
        ->type_name("")
        ->check([](const std::string& text) { return CheckForm(text, kSetForm); });
    command
        .add_option("--connect", edits.connections,
                    "NAME=IDENTIFIER: connect a definition to a property, or none when the "
                    "identifier is empty; can be repeated")
        ->allow_extra_args(false)
        ->type_name("")
        ->check([](const std::string& text) { return CheckForm(text, kConnectForm); });
}

void Apply(const Edits& edits, assets::IAssetInstance& asset, assets::IAssetLibrary& library,
           const std::string& file) {
    for (const std::string& set : edits.sets) {
        const auto [name, value] = Halves(set);
        assets::IProperty& property = Find(asset, name);
        RefuseOwn(name);
        // Of bytes it is the name of a file, which may have any.
        if (property.GetType() != assets::PropertyType::kBinary)
            RequireUtf8("the value of " + name, value);
        SetFromText(property, value);
    }
    for (const std::string& connection : edits.connections) {
        const auto [name, identifier] = Halves(connection);
        Connect(Find(asset, name), name, identifier, library, file);
    }
}

}  // namespace halvern
