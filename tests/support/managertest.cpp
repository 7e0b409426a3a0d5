#include "tests/support/managertest.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <utility>

namespace halvern_tests {

void ReportRecorder::Trace(const core::WideString&, std::uint32_t, std::uint32_t) {
    reports_.push_back("trace");
}

void ReportRecorder::Information(const core::WideString&, std::uint32_t, std::uint32_t) {
    reports_.push_back("information");
}

void ReportRecorder::Warning(const core::WideString& text, std::uint32_t, std::uint32_t) {
    reports_.push_back(std::string("warning: ") + text.AsUTF8());
}

void ReportRecorder::Error(const core::WideString& text, std::uint32_t, std::uint32_t) {
    reports_.push_back(std::string("error: ") + text.AsUTF8());
}

std::vector<std::string> ReportRecorder::Take() {
    return std::exchange(reports_, {});
}

ManagerTest::ManagerTest() {
    char name[] = "/tmp/halvern_manager_XXXXXX";
    folder_ = ::mkdtemp(name);
    ::chmod(folder_.c_str(), 0755);
    ::mkdir(TempFolder().c_str(), 0777);
    ::chmod(TempFolder().c_str(), 0777);
    ::setenv("TMPDIR", TempFolder().c_str(), 1);
    assets::SetReportSink(&recorder_);
}

ManagerTest::~ManagerTest() {
    assets::SetReportSink(nullptr);
    std::filesystem::remove_all(folder_);
}

void ManagerTest::TearDown() {
    EndManager();
    EXPECT_EQ(PrivateFolders(TempFolder()), std::vector<std::string>());
}

assets::IAssetLibraryManager& ManagerTest::Manager() {
    if (manager_ == nullptr) {
        manager_ = assets::GetIAssetLibraryManager();
        manager_->AddReference();
    }
    return *manager_;
}

void ManagerTest::EndManager() {
    if (manager_ == nullptr) return;
    for (std::size_t open = manager_->GetLibraryCount(); open > 0; --open) {
        assets::IAssetLibrary* const library = manager_->GetLibraryAt(open - 1);
        for (int claims = 0; manager_->GetLibraryCount() == open && claims < 8; ++claims)
            EXPECT_TRUE(manager_->UnloadLibrary(library));
    }
    EXPECT_TRUE(manager_->RemoveReference());
    manager_ = nullptr;
}

std::string ManagerTest::CopySample(const std::string& sample, const std::string& name) {
    const std::string target = Path(name.empty() ? sample : name);
    std::filesystem::copy_file(DataFile(sample), target,
                               std::filesystem::copy_options::overwrite_existing);
    ::chmod(target.c_str(), 0644);
    return target;
}

assets::IAssetLibrary* ManagerTest::Open(const std::string& path) {
    return Manager().OpenLibrary(core::UTF8String(path.c_str()));
}

assets::IAssetLibrary* ManagerTest::OpenForWriting(const std::string& path) {
    return Manager().OpenLibraryForWriting(core::UTF8String(path.c_str()));
}

assets::IAssetLibrary* ManagerTest::OpenCopy(const std::string& path) {
    return Manager().OpenLibraryCopy(core::UTF8String(path.c_str()));
}

assets::IAssetLibrary* ManagerTest::OpenCopyForWriting(const std::string& path) {
    return Manager().OpenLibraryCopyForWriting(core::UTF8String(path.c_str()));
}

assets::IAssetLibrary* ManagerTest::Create(const std::string& path, const std::string& identifier) {
    return Manager().CreateLibrary(core::UTF8String(path.c_str()),
                                   core::UTF8String(identifier.c_str()), 0);
}

std::string IdentifierOf(assets::IAssetLibrary& library) {
    core::UTF8String identifier;
    library.GetIdentifier(identifier);
    return identifier.AsUTF8();
}

std::vector<std::string> NamesOf(assets::IAssetDefinition::IIterator* walk) {
    std::vector<std::string> names;
    for (; !walk->IsAtEnd(); walk->Next()) {
        core::UTF8String name;
        walk->GetName(name);
        names.emplace_back(name.AsUTF8());
    }
    walk->Release();
    return names;
}

std::vector<std::string> NamesOf(assets::IAssetLibrary& library) {
    return NamesOf(library.GetDefinitions());
}

bool Has(assets::IAssetLibrary& library, const std::string& identifier) {
    return !NamesOf(library.GetDefinitionsById(core::UTF8String(identifier.c_str()))).empty();
}

assets::IAssetDefinition* DefinitionOf(assets::IAssetLibrary& library,
                                       const std::string& identifier) {
    assets::IAssetDefinition::IIterator* const walk =
        library.GetDefinitionsById(core::UTF8String(identifier.c_str()));
    assets::IAssetDefinition* const definition = walk->GetDefinition();
    walk->Release();
    return definition;
}

bool AddPreset(assets::IAssetLibrary& library, const std::string& identifier,
               const std::string& source) {
    assets::IAssetDefinition* const definition = DefinitionOf(library, source);
    if (definition == nullptr) return false;
    const bool made = library.CreatePreset(definition, core::UTF8String(identifier.c_str()), false);
    definition->Release();
    return made;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

bool Exists(const std::string& path) {
    return std::filesystem::exists(path);
}

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> PrivateFolders(const std::string& temp) {
    std::vector<std::string> folders;
    for (const std::string& place : {temp + "/halvernrun", temp}) {
        if (!std::filesystem::is_directory(place)) continue;
        for (const std::string& name : NamesIn(place))
            if (name.rfind("mgr40_", 0) == 0) folders.push_back(place + "/" + name);
    }
    return folders;
}

std::string Noise(std::size_t size) {
    std::minstd_rand random(42);
    std::string text(size, '\0');
    std::generate(text.begin(), text.end(), [&] { return static_cast<char>(random() >> 8); });
    return text;
}

}  // namespace halvern_tests
