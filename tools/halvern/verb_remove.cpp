// "halvern remove": takes a definition out of a library.

#include <memory>

#include "failure.h"
#include "library.h"
#include "replacement.h"
#include "session.h"
#include "verbs.h"

namespace halvern {
namespace {

struct Options {
    std::string identifier;
};

int Remove(const Options& options, const Common& common) {
    const std::string path = AbsolutePath(common.file);
    Session session;
    WritableLibrary library(session, path);
    {
        HeldDefinition definition = FindDefinition(*library.Get(), options.identifier, path);
        session.Reports().Forget();
        if (!library->RemovePreset(definition.Get()))
            throw Failure(kNo,
                          session.Reports().LastOr("the library does not give the definition " +
                                                   options.identifier + " up"));
        definition.Forget();
    }
    library.SaveInPlace();
    return kDone;
}

}  // namespace

Run DeclareRemove(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command.add_option("IDENTIFIER", options->identifier, "the definition")
        ->required()
        ->type_name("");
    AddQuiet(command, common);
    return [options, &common] { return Remove(*options, common); };
}

}  // namespace halvern
