#pragma once

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/core/utf8string.h>

#include <memory>
#include <string>

// Libraries to measure on, made and used as a host does.

namespace halvern_bench {

namespace assets = korvanet::platform::assets;
using korvanet::platform::core::UTF8String;

// A folder of this process that goes with it.
const std::string& ScratchFolder();

assets::IAssetLibraryManager& Manager();

struct ReleaseIt {
    template <class T>
    void operator()(T* object) const {
        object->Release();
    }
};
using DefinitionPtr = std::unique_ptr<assets::IAssetDefinition, ReleaseIt>;
using InstancePtr = std::unique_ptr<assets::IAssetInstance, ReleaseIt>;
using IteratorPtr = std::unique_ptr<assets::IAssetDefinition::IIterator, ReleaseIt>;

// An open library, unloaded at the end. Raises std::runtime_error when it does not open.
class OpenLibrary {
public:
    explicit OpenLibrary(const std::string& path, bool for_writing = false);
    OpenLibrary(OpenLibrary&& other) noexcept : library_(std::move(other.library_)) {}
    ~OpenLibrary();

    assets::IAssetLibrary& operator*() const { return *library_; }
    assets::IAssetLibrary* operator->() const { return library_.get(); }
    void Unload();
    void Save();

private:
    struct KeepIt {
        void operator()(assets::IAssetLibrary*) const {}
    };
    std::unique_ptr<assets::IAssetLibrary, KeepIt> library_;
};

DefinitionPtr FindDefinition(assets::IAssetLibrary& library, const UTF8String& name);

// The name of the definition of that number in the libraries that MakeLibrary makes.
std::string DefinitionName(int number);

// Writes a library of so many definitions of the starter content's generic material, with names,
// categories and keywords, and gives its path. The name of the file is its identifier too. One that
// this process has made already is used again.
std::string MakeLibrary(const std::string& name, int definitions);

// Writes a library with one definition, number 0, which has 40 properties: those of every asset,
// and texts, numbers, truths and colours.
std::string MakeLibraryOf40Properties();

}  // namespace halvern_bench
