// The smallest host: makes a library, saves it, opens it again and lists what it holds.
//
// usage: first_steps [FILE]    FILE is an absolute path where nothing is; without it the library is
//                              made in the folder for temporary files and removed at the end.

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetlibrary.h>
#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/core/utf8string.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using korvanet::platform::assets::GetIAssetLibraryManager;
using korvanet::platform::assets::IAssetDefinition;
using korvanet::platform::assets::IAssetLibrary;
using korvanet::platform::assets::IAssetLibraryManager;
using korvanet::platform::core::UTF8String;

int Fail(const char* what) {
    std::cerr << "first_steps: " << what << "\n";
    return 1;
}

std::size_t List(IAssetLibrary& library) {
    std::size_t count = 0;
    IAssetDefinition::IIterator* definitions = library.GetDefinitions();
    if (definitions == nullptr) return count;
    for (; !definitions->IsAtEnd(); definitions->Next()) {
        UTF8String name;
        if (definitions->GetName(name)) std::cout << "  " << name.AsUTF8() << "\n";
        ++count;
    }
    definitions->Release();
    return count;
}

int Run(IAssetLibraryManager& manager, const std::string& file) {
    const UTF8String path(file.c_str());
    IAssetLibrary* library = manager.CreateLibrary(path, UTF8String("first-steps"), 0);
    if (library == nullptr) return Fail("the library could not be created");
    if (!manager.SaveLibrary(library)) return Fail("the library could not be saved");
    if (!manager.UnloadLibrary(library)) return Fail("the library could not be unloaded");

    library = manager.OpenLibrary(path);
    if (library == nullptr) return Fail("the library could not be opened again");
    UTF8String identifier;
    library->GetIdentifier(identifier);
    std::cout << identifier.AsUTF8() << "\n";
    const std::size_t count = List(*library);
    std::cout << count << " definitions\n";
    return manager.UnloadLibrary(library) ? 0 : Fail("the library is still in use");
}

}  // namespace

int main(int argc, char** argv) {
    const bool given = argc > 1;
    const std::string file = given ? argv[1]
                                   : std::filesystem::temp_directory_path() /
                                         ("first_steps-" + std::to_string(getpid()) + ".jpk");

    // Where the library keeps its scratch files; a host that leaves it unset has them at the root.
    setenv("TMPDIR", std::filesystem::temp_directory_path().c_str(), 0);
    IAssetLibraryManager* manager = GetIAssetLibraryManager();
    if (manager == nullptr) return Fail("there is no manager");
    manager->AddReference();
    const int status = Run(*manager, file);
    // The last reference takes the manager and its scratch files with it.
    const bool gone = manager->RemoveReference();
    if (!given) std::remove(file.c_str());
    return status == 0 && !gone ? Fail("the manager is still in use") : status;
}
