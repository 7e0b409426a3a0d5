#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetlibrary.h>
#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/utf8string.h>

#include <string>
#include <vector>

#include "tests/support/child.h"
#include "tests/support/paths.h"

// What tests of the whole library share. Only public headers: the host's tests use it too.

namespace halvern_tests {

namespace assets = korvanet::platform::assets;
namespace core = korvanet::platform::core;

inline constexpr const char* kStarterIdentifier = "F38B2FFC-80A4-DF5A-51C9-BC701E7EA419";

// Keeps "error: " or "warning: " and the text of each report.
class ReportRecorder final : public assets::IReportSink {
public:
    void Trace(const core::WideString&, std::uint32_t, std::uint32_t) override;
    void Information(const core::WideString&, std::uint32_t, std::uint32_t) override;
    void Warning(const core::WideString& text, std::uint32_t, std::uint32_t) override;
    void Error(const core::WideString& text, std::uint32_t, std::uint32_t) override;

    // What came since the last call.
    std::vector<std::string> Take();

private:
    std::vector<std::string> reports_;
};

// A test with a folder of its own and, below it, the place of temporary files; with a sink; and
// with a manager from its first use on, which must go at the end and leave nothing behind.
class ManagerTest : public testing::Test {
protected:
    ManagerTest();
    ~ManagerTest() override;
    void TearDown() override;

    assets::IAssetLibraryManager& Manager();
    bool HasManager() const { return manager_ != nullptr; }
    // Gives the manager up, as the end of the test does; the next use makes another.
    void EndManager();

    const std::string& Folder() const { return folder_; }
    std::string Path(const std::string& name) const { return folder_ + "/" + name; }
    // The place of temporary files.
    std::string TempFolder() const { return folder_ + "/tmp"; }
    // Copies a sample of tests/data/ into the folder and gives its path there.
    std::string CopySample(const std::string& sample, const std::string& name = "");

    assets::IAssetLibrary* Open(const std::string& path);
    assets::IAssetLibrary* OpenForWriting(const std::string& path);
    assets::IAssetLibrary* OpenCopy(const std::string& path);
    assets::IAssetLibrary* OpenCopyForWriting(const std::string& path);
    assets::IAssetLibrary* Create(const std::string& path, const std::string& identifier = "");
    bool Unload(assets::IAssetLibrary* library) { return Manager().UnloadLibrary(library); }

    std::vector<std::string> Reports() { return recorder_.Take(); }

private:
    std::string folder_;
    ReportRecorder recorder_;
    assets::IAssetLibraryManager* manager_ = nullptr;
};

// Libraries.

std::string IdentifierOf(assets::IAssetLibrary& library);
// The names of a walk, which this ends.
std::vector<std::string> NamesOf(assets::IAssetDefinition::IIterator* walk);
std::vector<std::string> NamesOf(assets::IAssetLibrary& library);
bool Has(assets::IAssetLibrary& library, const std::string& identifier);
// One reference for the caller; null when there is none.
assets::IAssetDefinition* DefinitionOf(assets::IAssetLibrary& library,
                                       const std::string& identifier);
// Stores a definition of the library under another name, shown in listings.
bool AddPreset(assets::IAssetLibrary& library, const std::string& identifier,
               const std::string& source = "Generic-001");

// Files.

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& text);
bool Exists(const std::string& path);
// Leaf names, sorted.
std::vector<std::string> NamesIn(const std::string& folder);
// The private temporary folders below a place of temporary files.
std::vector<std::string> PrivateFolders(const std::string& temp);
// Text of `size` bytes that does not compress.
std::string Noise(std::size_t size);

}  // namespace halvern_tests
