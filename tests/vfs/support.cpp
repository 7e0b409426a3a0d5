#include "vfs/support.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "nuo/common/archive/primitives.h"

namespace vfs_tests {

std::string ReadAll(nuo::archive::iarchive& archive) {
    std::string text;
    char chunk[4096];
    for (;;) {
        const nuo::byte* last =
            nuo::archive::read_some(*archive.query_reader(), {chunk, sizeof chunk});
        const auto got = static_cast<std::size_t>(reinterpret_cast<const char*>(last) - chunk);
        if (got == 0) return text;
        text.append(chunk, got);
    }
}

void WriteAll(nuo::archive::iarchive& archive, std::string_view text) {
    nuo::archive::write_all(*archive.query_writer(), {text.data(), text.size()});
}

std::string ReadFile(fs::IVfs& files, const std::string& path) {
    const auto archive = files.create(path.c_str(), fs::mode_read, fs::open_existing);
    if (archive == nullptr) {
        ADD_FAILURE() << "no file at " << path;
        return {};
    }
    return ReadAll(*archive);
}

void WriteFile(fs::IVfs& files, const std::string& path, std::string_view text) {
    const auto archive = files.create(path.c_str(), fs::mode_write, fs::open_or_create);
    ASSERT_NE(archive, nullptr) << path;
    archive->query_writer()->truncate(0);
    WriteAll(*archive, text);
}

std::vector<std::string> Names(fs::IVfs& files, const std::string& path) {
    std::vector<std::string> names;
    for (const fs::VfsNode& child : files.children(path.c_str())) {
        EXPECT_EQ(child.owner, &files);
        names.push_back(Text(child.path));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string TextBehindPosition(const std::string& message) {
    static const std::regex form(R"(([^()]*\.(?:h|cpp))\((\d+)\)([^]*))");
    std::smatch parts;
    if (!std::regex_match(message, parts, form)) return '"' + message + '"';
    return parts[3];
}

DiskFolder::DiskFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vfstestXXXXXX").string();
    const char* made = ::mkdtemp(pattern.data());
    if (made == nullptr) throw std::runtime_error("no folder for the test: " + pattern);
    path_ = made;
}

DiskFolder::~DiskFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ReadDisk(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << path;
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteDisk(const std::string& path, std::string_view text) {
    std::ofstream out(path, std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    ASSERT_TRUE(out.good()) << path;
}

int ForkChild() {
    return ::fork();
}

int WaitForChild(int child) {
    int status = 0;
    if (::waitpid(child, &status, 0) != child) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void EndChild(int code) {
    ::_exit(code);
}

}  // namespace vfs_tests
