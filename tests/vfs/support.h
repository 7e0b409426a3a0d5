#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "velmor/vfs/vfs.h"

namespace vfs_tests {

namespace fs = velmor::fs;

// The whole of a file; fails the test when it cannot be opened.
std::string ReadFile(fs::IVfs& files, const std::string& path);

// Makes or replaces a file; the parents must exist.
void WriteFile(fs::IVfs& files, const std::string& path, std::string_view text);

// The leaf names of a folder, sorted by bytes.
std::vector<std::string> Names(fs::IVfs& files, const std::string& path);

inline std::string Text(nuo::string_ref text) {
    return std::string(text.data(), text.size());
}

std::string ReadAll(nuo::archive::iarchive& archive);
void WriteAll(nuo::archive::iarchive& archive, std::string_view text);

// The text of a message behind its source position, "file(line)"; the whole message in quotes when
// it has no position.
std::string TextBehindPosition(const std::string& message);

// Runs `statement` and gives the text that a failure of the class `Marker` carries behind the
// position. Fails the test when nothing or something else is raised.
template <class Marker, class Statement>
std::string RaisedText(Statement&& statement) {
    try {
        statement();
    } catch (const nuo::context_exception<Marker>& failure) {
        return TextBehindPosition(failure.what());
    } catch (const std::exception& other) {
        ADD_FAILURE() << "another failure was raised: " << other.what();
        return "another failure";
    }
    ADD_FAILURE() << "nothing was raised";
    return "nothing raised";
}

// A new folder of the local disk, removed with all that it holds.
class DiskFolder {
public:
    DiskFolder();
    ~DiskFolder();
    DiskFolder(const DiskFolder&) = delete;
    DiskFolder& operator=(const DiskFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// A file of the local disk, past our own code.
std::string ReadDisk(const std::string& path);
void WriteDisk(const std::string& path, std::string_view text);

// Runs `body` in a child process. The child's answer is its exit code: 0 when `body` returned true.
template <class Body>
int RunInChild(Body&& body);

int WaitForChild(int child);
int ForkChild();
[[noreturn]] void EndChild(int code);

template <class Body>
int RunInChild(Body&& body) {
    const int child = ForkChild();
    if (child != 0) return WaitForChild(child);
    int code = 2;
    try {
        code = body() ? 0 : 1;
    } catch (...) {
        code = 3;
    }
    EndChild(code);
}

}  // namespace vfs_tests
