#pragma once

#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/utf8string.h>

#include <memory>
#include <string>

namespace demo {

using korvanet::platform::assets::IAssetDefinition;
using korvanet::platform::assets::IAssetInstance;
using korvanet::platform::assets::IAssetLibrary;
using korvanet::platform::assets::IAssetLibraryManager;
using korvanet::platform::core::UTF8String;
using korvanet::platform::core::WideString;

inline UTF8String Text(const std::string& text) {
    return UTF8String(text.c_str());
}

inline std::wstring Wide(const std::string& text) {
    return Text(text).AsWide();
}

/// Gives a reference or an iterator back where its scope ends.
struct Releaser {
    template <class T>
    void operator()(T* held) const {
        held->Release();
    }
};
using Definition = std::unique_ptr<IAssetDefinition, Releaser>;
using Definitions = std::unique_ptr<IAssetDefinition::IIterator, Releaser>;
using Instance = std::unique_ptr<IAssetInstance, Releaser>;

/// The use of the asset layer by one process: a reference on the manager, and an ear for the
/// reports that tell why an operation failed.
class Session final : korvanet::platform::assets::IReportSink {
public:
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() override;

    IAssetLibraryManager* operator->() const { return manager_; }

    /// Throws a Failure with these words and those of the last report unless `done`.
    void Require(bool done, const std::string& otherwise);

    /// The words of the last report since this was asked before.
    std::string TakeReport();

    /// Opens a library to write it, and unloads it.
    IAssetLibrary& Open(const std::string& path);
    void Unload(IAssetLibrary& library);

    /// Gives the reference on the manager back. True when the manager went with it.
    bool End();

private:
    void Trace(const WideString& text, std::uint32_t code, std::uint32_t context) override;
    void Information(const WideString& text, std::uint32_t code, std::uint32_t context) override;
    void Warning(const WideString& text, std::uint32_t code, std::uint32_t context) override;
    void Error(const WideString& text, std::uint32_t code, std::uint32_t context) override;

    IAssetLibraryManager* manager_ = nullptr;
    std::string report_;
};

/// The definition of that identifier; throws a Failure when the library has none.
Definition Find(IAssetLibrary& library, const std::string& identifier);

}  // namespace demo
