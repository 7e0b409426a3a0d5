// The main job of the product, told step by step: a library is made from the starter content,
// listed, edited, saved, opened again by a second process, and verified by the command. What each
// step shows is held against what it has to be; the first difference ends the demo with 1.
//
// usage: halvern_demo [--content FOLDER] [--keep FOLDER]
//   --content   the content to use instead of the one that stands beside the program
//   --keep      an empty or new folder to work in, which then stays

#include <stdlib.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <vector>

#include "authoring.h"
#include "editing.h"
#include "files.h"
#include "listing.h"
#include "process.h"
#include "reopening.h"
#include "session.h"
#include "story.h"

namespace demo {
namespace {

namespace fs = std::filesystem;

void Make(Story& story, Session& session, const fs::path& file, const fs::path& content) {
    story.Step("Load the schemas of the starter content",
               [&] { return LoadSchemas(session, content); },
               {"CeramicSchema on CommonSchema, for a materialappearance: 25 properties",
                "CommonSchema: 17 properties",
                "GenericSchema on CommonSchema, for a materialappearance: 26 properties",
                "UnifiedBitmapSchema on CommonSchema, for a texture: 25 properties"});

    IAssetLibrary* library = nullptr;
    story.Step("Create a library and bring the schemas in",
               [&] {
                   library = session->CreateLibrary(Text(file.string()), Text("starter"), 0);
                   session.Require(library != nullptr, "the library could not be created");
                   return BringSchemasIn(session, *library);
               },
               {"a library with the identifier starter", "3 schemas brought in, with their base"});

    story.Step("Add definitions", [&] { return AddDefinitions(session, *library, content); },
               {"checker of UnifiedBitmapSchema, with checker.png",
                "grain of UnifiedBitmapSchema, with grain.png",
                "glazed-tile of CeramicSchema, connected to checker",
                "plain-paint of GenericSchema, colour 0.25, 0.5, 0.75, 1"});

    story.Step("Save it, with its message files beside it",
               [&] {
                   CopyMessages(content, file);
                   session.Require(session->SaveLibrary(library), "it could not be saved");
                   session.Unload(*library);
                   return FilesOf(file.parent_path());
               },
               {"starter-DEU.xlf", "starter-ENG.xlf", "starter.jpk"});
}

void ListTwice(Story& story, IAssetLibrary& library) {
    story.Step("List it in English", [&] { return List(library, "ENG"); },
               {"checker | Checker pattern | Squares in two greys. | Textures | pattern",
                "glazed-tile | Glazed tile | A glazed wall tile with a fine checker relief. | "
                "Ceramic & tiles | wall",
                "grain | Grain | An even grain for rough surfaces. | Textures | pattern",
                "plain-paint | Plain paint | Matt wall paint on a fine grain. | Paint | wall",
                "and 1 hidden, connected to these"});
    story.Step("List it in German; what German lacks is shown in English",
               [&] { return List(library, "DEU"); },
               {"checker | Schachmuster | Quadrate in zwei Grautönen. | Texturen | Muster",
                "glazed-tile | Glasierte Fliese | Eine glasierte Wandfliese mit feinem "
                "Schachrelief. | Keramik & Fliesen | Wand",
                "grain | Körnung | Eine gleichmäßige Körnung für raue Oberflächen. | Texturen | "
                "Muster",
                "plain-paint | Plain paint | Matte Wandfarbe auf feiner Körnung. | Farbe | Wand",
                "and 1 hidden, connected to these"});
}

void Edit(Story& story, Session& session, IAssetLibrary& library) {
    Instance tile(Find(library, "glazed-tile")->CreateInstance());
    story.Step("Edit an instance of the tile under an observer",
               [&] { return EditTile(session, library, *tile); },
               {"heard: Tile width is now 20 cm", "heard: Finish is now Matte",
                "heard: Color is now 0.2, 0.3, 0.5, 1", "refused: Relief 7 (Value out of range)",
                "heard: Relief pattern is now connected to Grain",
                "heard: the asset is now called Large tile"});
    story.Step("Store it as a preset, and save", [&] { return StoreTile(session, library, *tile); },
               {"refused: glazed-tile (the identifier is taken)", "stored as large-tile", "saved",
                "refused: to unload the library (the instance is held)"});
}

void Close(Story& story, Session& session, IAssetLibrary& library) {
    story.Step("Unload the library and let the manager go",
               [&] {
                   session.Unload(library);
                   session.Require(session.End(), "the manager is still in use");
                   return Lines{"gone"};
               },
               {"gone"});
}

Lines RunAndTell(const std::vector<std::string>& command) {
    Outcome outcome = RunProgram(command);
    outcome.lines.push_back("exit status " + std::to_string(outcome.status));
    return outcome.lines;
}

void LookFromOutside(Story& story, const fs::path& file, const fs::path& content) {
    story.Step(
        "Open it in a second process",
        [&] {
            return RunAndTell({OwnProgram(), "--reopen", file, content});
        },
        {"glazed-tile, in German: Glasierte Fliese", "  Tile width: 10 cm", "  Finish: Satin",
         "  Color: 0.9, 0.88, 0.84, 1", "  Relief: 0.25", "  Relief pattern: Checker pattern",
         "large-tile, in German: Large tile", "  Tile width: 20 cm", "  Finish: Matte",
         "  Color: 0.2, 0.3, 0.5, 1", "  Relief: 0.25", "  Relief pattern: Grain",
         "jpk:?asset=/starter/Resources/grain/unifiedbitmap_Bitmap/0/grain.png: the bytes "
         "of the content",
         "exit status 0"});
    story.Step("Check every byte of it: halvern verify starter.jpk",
               [&] {
                   return RunAndTell({OwnProgram().parent_path() / "halvern", "verify", file});
               },
               {"exit status 0"});
}

int Tell(const std::string& content_named, const std::string& kept) {
    const fs::path content = content_named.empty() ? InstalledContent() : fs::path(content_named);
    const WorkFolder folder(kept);
    const fs::path file = folder.Path() / "starter.jpk";
    setenv("TMPDIR", folder.Scratch().c_str(), 1);

    std::puts("Halvern: a library on disk, end to end");
    Story story;
    {
        Session session;
        Make(story, session, file, content);
        IAssetLibrary& library = session.Open(file.string());
        ListTwice(story, library);
        Edit(story, session, library);
        Close(story, session, library);
    }
    LookFromOutside(story, file, content);
    std::puts("\nAll steps went as expected.");
    return 0;
}

int TellReopened(const char* file, const char* content) {
    for (const std::string& line : Reopen(file, content))
        std::puts(line.c_str());
    return 0;
}

int Run(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--reopen") == 0) return TellReopened(argv[2], argv[3]);
    std::string content, kept;
    for (int i = 1; i < argc; i += 2) {
        std::string* const option = std::strcmp(argv[i], "--content") == 0 ? &content
                                    : std::strcmp(argv[i], "--keep") == 0  ? &kept
                                                                           : nullptr;
        if (option == nullptr || i + 1 == argc) {
            std::fputs("usage: halvern_demo [--content FOLDER] [--keep FOLDER]\n", stderr);
            return 2;
        }
        *option = std::filesystem::absolute(argv[i + 1]);
    }
    return Tell(content, kept);
}

}  // namespace
}  // namespace demo

int main(int argc, char** argv) {
    try {
        return demo::Run(argc, argv);
    } catch (const std::exception& failure) {
        std::fflush(stdout);
        std::fprintf(stderr, "halvern_demo: %s\n", failure.what());
        return 1;
    }
}
