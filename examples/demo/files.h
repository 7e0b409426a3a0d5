#pragma once

#include <filesystem>
#include <string>

#include "story.h"

namespace demo {

/// Where the demo's own program stands; the command lies beside it, the content below the same
/// prefix.
std::filesystem::path OwnProgram();
std::filesystem::path InstalledContent();

/// The folder that the demo works in: one that was named and stays, or a fresh one that goes with
/// the object.
class WorkFolder {
public:
    explicit WorkFolder(const std::string& named);
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    const std::filesystem::path& Path() const { return path_; }

    /// Where the library keeps its scratch files; goes in both cases.
    std::filesystem::path Scratch() const { return path_ / "scratch"; }

private:
    std::filesystem::path path_;
    bool stays_;
};

/// Puts the message files of the content beside a library, under the library's name.
void CopyMessages(const std::filesystem::path& content, const std::filesystem::path& library);

/// The names of the files of a folder, sorted.
Lines FilesOf(const std::filesystem::path& folder);

}  // namespace demo
