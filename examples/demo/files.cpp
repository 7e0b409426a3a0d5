#include "files.h"

#include <stdlib.h>

#include <algorithm>

namespace demo {

namespace fs = std::filesystem;

fs::path OwnProgram() {
    return fs::read_symlink("/proc/self/exe");
}

fs::path InstalledContent() {
    return OwnProgram().parent_path().parent_path() / "share/halvern/content";
}

WorkFolder::WorkFolder(const std::string& named) : stays_(!named.empty()) {
    if (stays_) {
        path_ = fs::absolute(named);
        fs::create_directories(path_);
        Require(fs::is_empty(path_), named + " is not empty");
    } else {
        std::string name = fs::temp_directory_path() / "halvern-demo.XXXXXX";
        Require(mkdtemp(name.data()) != nullptr, "no temporary folder could be made");
        path_ = name;
    }
    fs::create_directory(Scratch());
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(stays_ ? Scratch() : path_, ignored);
}

void CopyMessages(const fs::path& content, const fs::path& library) {
    for (const char* locale : {"ENG", "DEU"}) {
        const std::string ending = std::string("-") + locale + ".xlf";
        fs::copy_file(content / "messages" / ("Starter" + ending),
                      library.parent_path() / (library.stem().string() + ending));
    }
}

Lines FilesOf(const fs::path& folder) {
    Lines names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace demo
