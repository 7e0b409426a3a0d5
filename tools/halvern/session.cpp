#include "session.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <korvanet/platform/core/utf8string.h>

#include "failure.h"
#include "inspect/verify.h"

namespace halvern {

using core::UTF8String;

namespace {

std::string TempFolder() {
    for (const char* name : {"TMPDIR", "TMP"})
        if (const char* folder = std::getenv(name); folder != nullptr && *folder != '\0')
            return folder;
    return "/tmp";
}

// What is wrong with a file that does not open, or plain words when nobody can tell.
std::string WordsForOpening(const std::string& path, const std::string& report) {
    const std::string why = inspect::WhyNotOpened(path);
    if (!why.empty()) return why;
    return report.empty() ? "the library does not open" : report;
}

}  // namespace

Session::Session() : scratch_(Temporary::MakeFolder(TempFolder() + "/halvern-XXXXXX")) {
    ::setenv("TMPDIR", scratch_.Path().c_str(), 1);
    manager_ = assets::GetIAssetLibraryManager();
    manager_->AddReference();
}

Session::~Session() {
    CloseSystemLibrary();
    manager_->RemoveReference();
}

bool Session::CloseSystemLibrary() {
    if (system_ == nullptr) return false;
    manager_->UnloadLibrary(std::exchange(system_, nullptr));
    return true;
}

void Session::OpenSystemLibrary(const std::string& path) {
    if (path.empty()) return;
    try {
        system_ = OpenToRead(*this, AbsolutePath(path));
    } catch (const Failure& failure) {
        throw Failure(failure.Status(), "the system library " + path + ": " + failure.what());
    }
}

OpenLibrary::~OpenLibrary() {
    if (library_ != nullptr) session_->Manager().UnloadLibrary(library_);
}

assets::IAssetLibrary* OpenToRead(Session& session, const std::string& path) {
    session.Reports().Forget();
    assets::IAssetLibraryManager& manager = session.Manager();
    assets::IAssetLibrary* library = nullptr;
    try {
        const UTF8String name(path.c_str());
        // Opening a file of the older layout in place would convert it.
        library = manager.IsLibraryUpgradeRequired(name) ? manager.OpenLibraryCopy(name)
                                                         : manager.OpenLibrary(name);
    } catch (const std::exception&) {
        library = nullptr;  // the walk below tells more than the message
    }
    if (library == nullptr)
        throw Failure(kFile, WordsForOpening(path, session.Reports().LastOr("")));
    return library;
}

std::string AbsolutePath(const std::string& path) {
    if (path.empty()) throw Failure(kUsage, "the name of a file is empty");
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) throw Failure(kFile, error.message());
    // The last name may be a link, or of nothing yet; the folders before it are taken for what they
    // are, as "link/.." is not what it looks like.
    const std::filesystem::path folder = std::filesystem::canonical(absolute.parent_path(), error);
    return (error ? absolute : folder / absolute.filename()).lexically_normal().string();
}

}  // namespace halvern
