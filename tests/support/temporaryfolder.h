#pragma once

#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

namespace halvern_tests {

// A folder of its own for a test, which goes with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = "/tmp/halvern_test_XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    const std::string& Path() const { return path_; }
    std::string Path(const std::string& name) const { return path_ + "/" + name; }
    // Names of all that lies in it, hidden files too.
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename().string());
        return names;
    }

private:
    std::string path_;
};

}  // namespace halvern_tests
