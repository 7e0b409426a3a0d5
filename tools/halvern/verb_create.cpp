// "halvern create": makes a library, with the schemas of a folder.

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include <korvanet/platform/core/utf8string.h>

#include "failure.h"
#include "inspect/verify.h"
#include "library.h"
#include "output.h"
#include "replacement.h"
#include "session.h"
#include "verbs.h"

namespace halvern {

using core::UTF8String;

namespace {

struct Options {
    std::string identifier;
    std::string schemas;
};

std::vector<std::filesystem::path> SchemaFiles(const std::string& folder) {
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        if (entry.path().extension() == ".xml") files.push_back(entry.path());
    if (error) throw Failure(kFile, "the folder " + folder + " cannot be read: " + error.message());
    if (files.empty())
        throw Failure(kFile, "the folder " + folder + " holds no schema file (*.xml)");
    std::sort(files.begin(), files.end());
    return files;
}

// Each file brings its bases from the same folder with it.
void AddSchemas(Session& session, assets::IAssetLibrary& library, const Options& options,
                const Common& common) {
    Progress progress("schemas", common.quiet);
    for (const std::filesystem::path& file : SchemaFiles(AbsolutePath(options.schemas))) {
        progress.Step();
        session.Reports().Forget();
        assets::IAssetSchema* const schema = session.Manager().LoadSchemaFromFolder(
            UTF8String(file.stem().c_str()), UTF8String(file.parent_path().c_str()));
        if (schema == nullptr)
            throw Failure(kFile,
                          "the schema " + file.string() + " cannot be loaded: " +
                              session.Reports().WhyOr(
                                  inspect::WhyNoSchema(file.string()),
                                  "its base is missing, or its UID is not the name of the file"));
        if (!library.AddSchema(schema))
            throw Failure(kNo, session.Reports().LastOr("the library does not take the schema " +
                                                        file.stem().string()));
    }
}

assets::IAssetLibrary* CreateAt(Session& session, const std::string& path,
                                const std::string& identifier) {
    return session.Manager().CreateLibrary(UTF8String(path.c_str()), UTF8String(identifier.c_str()),
                                           0);
}

// The identifier is at fault where a library can be made without it.
assets::IAssetLibrary* CreateLibrary(Session& session, const std::string& path,
                                     const std::string& identifier) {
    if (assets::IAssetLibrary* const library = CreateAt(session, path, identifier)) return library;
    const std::string why =
        session.Reports().LastOr("the library cannot be created with the identifier " + identifier);
    assets::IAssetLibrary* const other =
        identifier.empty() ? nullptr : CreateAt(session, path, std::string());
    if (other == nullptr)
        throw Failure(kFile, session.Reports().LastOr("the library cannot be created"));
    session.Manager().UnloadLibrary(other);
    throw Failure(kNo, why);
}

void CheckFolder(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error) &&
        (!error || error == std::errc::no_such_file_or_directory ||
         error == std::errc::not_a_directory))
        throw Failure(kFile, "there is no folder " + folder.string());
}

int Create(const Options& options, const Common& common) {
    RequireUtf8("the identifier", options.identifier);
    const std::string path = AbsolutePath(common.file);
    Session session;
    CheckFolder(path);
    const FileLock lock(path);
    if (::access(path.c_str(), F_OK) == 0) throw Failure(kNo, "a file of this name exists already");
    Replacement file = Replacement::For(path);
    assets::IAssetLibrary* library = CreateLibrary(session, file.Path(), options.identifier);
    UTF8String identifier;
    {
        OpenLibrary claim(session, library->AddUse());
        if (!options.schemas.empty()) AddSchemas(session, *library, options, common);
        library->GetIdentifier(identifier);
    }
    SaveAndUnload(session, library, "");
    file.PutInFreePlace();
    TellStored(identifier.AsUTF8(), common);
    return kDone;
}

}  // namespace

Run DeclareCreate(CLI::App& command, Common& common) {
    const auto options = std::make_shared<Options>();
    AddFile(command, common);
    command
        .add_option("--id", options->identifier, "the library's identifier; a fresh one without")
        ->type_name("IDENTIFIER");
    command.add_option("--schemas", options->schemas, "a folder of schema files to bring in")
        ->type_name("FOLDER");
    AddJson(command, common);
    AddQuiet(command, common);
    return [options, &common] { return Create(*options, common); };
}

}  // namespace halvern
