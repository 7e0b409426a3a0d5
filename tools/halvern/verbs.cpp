#include "verbs.h"

#include <array>

#include <nlohmann/json.hpp>

#include "failure.h"
#include "jsontext.h"
#include "output.h"

namespace halvern {
namespace {

constexpr std::array kVerbs{
    Verb{"create", "Makes a library, with the schemas of a folder.",
         "halvern create walls.jpk --schemas schemas", DeclareCreate},
    Verb{"add", "Adds a definition made from a schema of the library.",
         "halvern add walls.jpk GenericSchema plaster --name Plaster --set "
         "generic_diffuse=0.9,0.9,0.85",
         DeclareAdd},
    Verb{"list", "Lists the definitions: identifier, asset type, schema, name.",
         "halvern list walls.jpk --locale DEU", DeclareList},
    Verb{"show", "Shows one definition with all its properties.",
         "halvern show walls.jpk plaster --json", DeclareShow},
    Verb{"preset", "Stores a changed copy of a definition as a new one.",
         "halvern preset walls.jpk plaster rough-plaster --set \"generic_bump_amount=2.5 mm\"",
         DeclarePreset},
    Verb{"remove", "Removes a definition.", "halvern remove walls.jpk rough-plaster",
         DeclareRemove},
    Verb{"verify", "Checks everything in the file and prints each finding.",
         "halvern verify walls.jpk", DeclareVerify}};

}  // namespace

std::span<const Verb> Verbs() {
    return kVerbs;
}

void TellStored(const std::string& identifier, const Common& common) {
    if (common.quiet && !common.json) return;
    try {
        Output output;
        output.Line(common.json ? JsonText({{"identifier", identifier}}) : Printable(identifier));
        output.Flush();
    } catch (const OutputClosed&) {
        return;
    } catch (const Failure& failure) {
        throw Failure(failure.Status(), std::string("the file is saved, but ") + failure.what());
    }
}

void AddFile(CLI::App& command, Common& common) {
    command.add_option("FILE", common.file, "the library")->required()->type_name("");
}

void AddJson(CLI::App& command, Common& common) {
    command.add_flag("--json", common.json, "print JSON");
}

void AddLocale(CLI::App& command, Common& common) {
    command
        .add_option("--locale", common.locale,
                    "show texts in this language, such as ENG, from the message files beside FILE")
        ->type_name("LOCALE");
}

void AddSystem(CLI::App& command, Common& common) {
    command.add_option("--system", common.system, "the system library to open beside FILE")
        ->type_name("FILE");
}

void AddQuiet(CLI::App& command, Common& common) {
    command.add_flag("--quiet", common.quiet, "print nothing but what was asked for");
}

}  // namespace halvern
