#include "bench/libraries.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tests/support/paths.h"

namespace halvern_bench {
namespace {

class Scratch {
public:
    Scratch() {
        std::string name = std::filesystem::temp_directory_path() / "halvern_bench_XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch folder");
        path = name;
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { std::filesystem::remove_all(path); }

    std::string path;
};

assets::IAssetSchema& LoadSchema(const std::string& path) {
    assets::IAssetSchema* const schema = Manager().LoadSchemaFile(UTF8String(path.c_str()));
    if (schema == nullptr) throw std::runtime_error("schema does not load: " + path);
    return *schema;
}

assets::IAssetSchema& ContentSchema(const std::string& name) {
    if (assets::IAssetSchema* const known = Manager().FindSchema(UTF8String(name.c_str())))
        return *known;
    return LoadSchema(halvern_tests::SourceFolder() + "/content/schemas/" + name + ".xml");
}

InstancePtr MakeInstance(assets::IAssetSchema& schema) {
    InstancePtr made(Manager().CreateInstanceFromSchema(&schema, nullptr, nullptr));
    if (made == nullptr) throw std::runtime_error("no instance");
    return made;
}

void Store(assets::IAssetLibrary& library, assets::IAssetInstance& instance,
           const std::string& name) {
    if (!library.CreatePresetFromInstance(&instance, UTF8String(name.c_str()), false))
        throw std::runtime_error("no preset");
}

// Creates a library, has it filled, saves and unloads it.
template <class Fill>
std::string MakeFile(const std::string& name, Fill fill) {
    const std::string path = ScratchFolder() + "/" + name + ".jpk";
    if (std::filesystem::exists(path)) return path;
    assets::IAssetLibrary* const library =
        Manager().CreateLibrary(UTF8String(path.c_str()), UTF8String(name.c_str()), 0);
    if (library == nullptr) throw std::runtime_error("library is not created: " + path);
    fill(*library);
    if (!Manager().SaveLibrary(library) || !Manager().UnloadLibrary(library))
        throw std::runtime_error("library is not saved: " + path);
    return path;
}

constexpr const char* kFinishes[] = {"Brass", "Glass", "Marble", "Linen", "Oak"};

}  // namespace

const std::string& ScratchFolder() {
    static const Scratch scratch;
    return scratch.path;
}

assets::IAssetLibraryManager& Manager() {
    return *assets::GetIAssetLibraryManager();
}

OpenLibrary::OpenLibrary(const std::string& path, bool for_writing)
    : library_(for_writing ? Manager().OpenLibraryForWriting(UTF8String(path.c_str()))
                           : Manager().OpenLibrary(UTF8String(path.c_str()))) {
    if (library_ == nullptr) throw std::runtime_error("library does not open: " + path);
}

OpenLibrary::~OpenLibrary() {
    if (library_ != nullptr) Manager().UnloadLibrary(library_.get());
}

void OpenLibrary::Unload() {
    if (!Manager().UnloadLibrary(library_.release()))
        throw std::runtime_error("library does not unload");
}

void OpenLibrary::Save() {
    if (!Manager().SaveLibrary(library_.get())) throw std::runtime_error("library is not saved");
}

DefinitionPtr FindDefinition(assets::IAssetLibrary& library, const UTF8String& name) {
    const IteratorPtr found(library.GetDefinitionsById(name));
    DefinitionPtr definition(found->IsAtEnd() ? nullptr : found->GetDefinition());
    if (definition == nullptr) throw std::runtime_error("definition is missing");
    return definition;
}

std::string DefinitionName(int number) {
    const std::string digits = std::to_string(number);
    return "definition-" + std::string(8 - digits.size(), '0') + digits;
}

std::string MakeLibrary(const std::string& name, int definitions) {
    return MakeFile(name, [definitions](assets::IAssetLibrary& library) {
        if (definitions == 0) return;
        ContentSchema("CommonSchema");
        assets::IAssetSchema& schema = ContentSchema("GenericSchema");
        for (int i = 0; i < definitions; ++i) {
            const InstancePtr made = MakeInstance(schema);
            made->SetUIName(UTF8String(("Material " + std::to_string(i)).c_str()));
            made->SetDescription(UTF8String(kFinishes[i % 5]));
            made->AddCategory(UTF8String(("Group " + std::to_string(i % 40)).c_str()));
            if (i % 3 != 0) made->AddKeyword(UTF8String("metal"));
            if (i % 3 == 2) made->AddKeyword(UTF8String("paint"));
            made->RenewVersionGUID();
            Store(library, *made, DefinitionName(i));
        }
    });
}

std::string MakeLibraryOf40Properties() {
    return MakeFile("forty", [](assets::IAssetLibrary& library) {
        ContentSchema("CommonSchema");
        const std::string path = ScratchFolder() + "/FortySchema.xml";
        std::ofstream xml(path);
        xml << "<AssetSchema><UID val=\"FortySchema\"/><Base val=\"CommonSchema\"/>"
               "<type val=\"materialappearance\"/>";
        // The root schema has 17 properties.
        for (int i = 0; i < 8; ++i)
            xml << "<Float id=\"number" << i << "\" val=\"0.5\"/>";
        for (int i = 0; i < 4; ++i) {
            xml << "<Integer id=\"count" << i << "\" val=\"7\"/>";
            xml << "<Boolean id=\"choice" << i << "\" val=\"true\"/>";
            xml << "<String id=\"remark" << i << "\" val=\"a text of the usual length\"/>";
        }
        for (int i = 0; i < 3; ++i)
            xml << "<Color id=\"color" << i
                << "\" valR=\"0.8\" valG=\"0.8\" valB=\"0.8\" valA=\"1\"/>";
        xml << "</AssetSchema>";
        xml.close();
        const InstancePtr made = MakeInstance(LoadSchema(path));
        made->SetUIName(UTF8String("A definition of forty properties"));
        made->SetDescription(UTF8String("What a material of the usual size holds"));
        made->AddCategory(UTF8String("Group"));
        made->AddKeyword(UTF8String("metal"));
        Store(library, *made, DefinitionName(0));
    });
}

}  // namespace halvern_bench
