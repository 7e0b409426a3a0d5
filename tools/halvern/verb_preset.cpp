// "halvern preset" and "halvern add": new definitions, from another one or from a schema.

#include <memory>

#include <korvanet/platform/core/utf8string.h>

#include "edits.h"
#include "failure.h"
#include "library.h"
#include "replacement.h"
#include "session.h"
#include "verbs.h"

namespace halvern {

using core::UTF8String;

namespace {

struct Options {
    std::string source;  // a definition, or a schema
    std::string identifier;
    std::string name;
    Edits edits;
    bool hidden = false;
};

void CheckFree(WritableLibrary& library, const std::string& identifier) {
    if (identifier.empty()) throw Failure(kNo, "a definition needs an identifier");
    RequireUtf8("the identifier", identifier);
    if (HasDefinition(*library.Get(), identifier))
        throw Failure(kNo, "there is a definition " + identifier + " already");
}

void Store(Session& session, WritableLibrary& library, assets::IAssetInstance& asset,
           const Options& options) {
    session.Reports().Forget();
    if (!library->CreatePresetFromInstance(&asset, UTF8String(options.identifier.c_str()),
                                           options.hidden))
        throw Failure(kNo, session.Reports().LastOr("the library does not take the definition " +
                                                    options.identifier));
}

int Preset(const Options& options, const Common& common) {
    const std::string path = AbsolutePath(common.file);
    Session session;
    session.OpenSystemLibrary(common.system);
    WritableLibrary library(session, path);
    {
        const HeldDefinition source = FindDefinition(*library.Get(), options.source, path);
        CheckFree(library, options.identifier);
        const HeldInstance instance = Instantiate(*source.Get(), options.source, path);
        Apply(options.edits, *instance.Get(), *library.Get(), path);
        Store(session, library, *instance.Get(), options);
    }
    library.SaveInPlace();
    TellStored(options.identifier, common);
    return kDone;
}

// The schemas of an open library are among those of the manager.
HeldInstance FromSchema(Session& session, WritableLibrary& library, const Options& options) {
    assets::IAssetSchema* const schema =
        session.Manager().FindSchema(UTF8String(options.source.c_str()));
    if (schema == nullptr) throw Failure(kNo, "there is no schema " + options.source);
    UTF8String owner;
    library->GetIdentifier(owner);
    const UTF8String identifier(options.identifier.c_str());
    session.Reports().Forget();
    HeldInstance instance(session.Manager().CreateInstanceFromSchema(schema, &identifier, &owner));
    if (!instance)
        throw Failure(kNo, session.Reports().LastOr("no definition can be made from the schema " +
                                                    options.source));
    return instance;
}

int Add(const Options& options, const Common& common) {
    const std::string path = AbsolutePath(common.file);
    Session session;
    session.OpenSystemLibrary(common.system);
    WritableLibrary library(session, path);
    {
        CheckFree(library, options.identifier);
        const HeldInstance instance = FromSchema(session, library, options);
        RequireUtf8("the name", options.name);
        if (!options.name.empty() && !instance->SetUIName(UTF8String(options.name.c_str())))
            throw Failure(kNo, "the schema " + options.source + " has no property for a name");
        Apply(options.edits, *instance.Get(), *library.Get(), path);
        Store(session, library, *instance.Get(), options);
    }
    library.SaveInPlace();
    TellStored(options.identifier, common);
    return kDone;
}

void AddShared(CLI::App& command, Common& common, Options& options) {
    AddEdits(command, options.edits);
    AddSystem(command, common);
    AddJson(command, common);
    AddQuiet(command, common);
}

}  // namespace

Run DeclarePreset(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command.add_option("SOURCE", options->source, "the definition to start from")
        ->required()
        ->type_name("");
    command.add_option("NEW", options->identifier, "the identifier of the new one")
        ->required()
        ->type_name("");
    command.add_flag("--hidden", options->hidden, "leave the new one out of listings");
    AddShared(command, common, *options);
    return [options, &common] { return Preset(*options, common); };
}

Run DeclareAdd(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command.add_option("SCHEMA", options->source, "the id of a schema of the library")
        ->required()
        ->type_name("");
    command.add_option("IDENTIFIER", options->identifier, "the identifier of the definition")
        ->required()
        ->type_name("");
    command.add_option("--name", options->name, "the name for people")->type_name("UINAME");
    AddShared(command, common, *options);
    return [options, &common] { return Add(*options, common); };
}

}  // namespace halvern
