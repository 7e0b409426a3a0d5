#include "nuo/temp_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace nuo_tests {

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "nuo-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

nuo::buffer<nuo::byte> Bytes(const std::string& text) {
    const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
    return {first, first + text.size()};
}

std::string Text(const nuo::buffer<nuo::byte>& bytes) {
    return {bytes.begin(), bytes.end()};
}

bool TrueInChild(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        bool result = false;
        try {
            result = body();
        } catch (...) {
            result = false;
        }
        ::_exit(result ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

}  // namespace nuo_tests
