#pragma once

#include <functional>
#include <string>

#include "nuo/common/buffer.h"

namespace nuo_tests {

/// A fresh folder that goes with its object, and all that is in it.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path(const std::string& name) const { return path_ + "/" + name; }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);

nuo::buffer<nuo::byte> Bytes(const std::string& text);
std::string Text(const nuo::buffer<nuo::byte>& bytes);

/// Runs `body` in a child process; true when it returned true there.
bool TrueInChild(const std::function<bool()>& body);

}  // namespace nuo_tests
