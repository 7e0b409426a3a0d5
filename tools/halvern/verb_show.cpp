// "halvern show": one definition with all its properties.

#include <memory>

#include <korvanet/platform/core/utf8string.h>
#include <nlohmann/json.hpp>

#include "failure.h"
#include "jsontext.h"
#include "library.h"
#include "output.h"
#include "propertyjson.h"
#include "session.h"
#include "valuetext.h"
#include "verbs.h"

namespace halvern {

using core::UTF8String;
using nlohmann::json;

namespace {

struct Options {
    std::string identifier;
};

std::string BaseSchema(assets::IAssetLibrary& library, const std::string& identifier) {
    const HeldIterator found(library.GetDefinitionsById(UTF8String(identifier.c_str())));
    UTF8String schema;
    found->GetBaseSchema(schema);
    return schema.AsUTF8();
}

void PrintProperties(const json& asset, Output& output) {
    output.Line(Printable(asset["identifier"].get<std::string>() + "  " +
                          asset["schema"].get<std::string>()));
    for (const auto& [name, property] : asset["properties"].items()) {
        std::string line = "  " + name;
        if (!property["value"].is_null()) line += " = " + JsonText(property["value"]);
        if (property.contains("units"))
            line += " " + UnitWord(property["units"].get<std::uint32_t>());
        if (property.contains("connected") && !property["connected"].empty())
            line += " <- " + JsonText(property["connected"]);
        output.Line(Printable(line));
    }
}

int Show(const Options& options, const Common& common) {
    const std::string path = AbsolutePath(common.file);
    Session session;
    const OpenLibrary library(session, OpenToRead(session, path));
    const HeldDefinition definition = FindDefinition(*library.Get(), options.identifier, path);
    const HeldInstance instance = Instantiate(*definition.Get(), options.identifier, path);
    const json asset{{"identifier", options.identifier},
                     {"schema", BaseSchema(*library.Get(), options.identifier)},
                     {"properties", PropertiesJson(*instance.Get(), common.locale)}};
    Output output;
    if (common.json)
        output.Line(JsonText(asset));
    else
        PrintProperties(asset, output);
    output.Flush();
    return kDone;
}

}  // namespace

Run DeclareShow(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command.add_option("IDENTIFIER", options->identifier, "the definition")
        ->required()
        ->type_name("");
    AddLocale(command, common);
    AddJson(command, common);
    AddQuiet(command, common);
    return [options, &common] { return Show(*options, common); };
}

}  // namespace halvern
