#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "inspect/findings.h"
#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"

namespace halvern::inspect {

using Bytes = nuo::buffer<nuo::byte>;

// The files of a package with its manifests, as the ZIP below shows them, and what earlier steps
// found about them. A part that was found damaged is not looked at again.
class PackageParts {
public:
    // Raises what ZipFs raises. `file` and `findings` outlive the object.
    PackageParts(nuo::archive::iarchive& file, std::set<std::string> unreadable,
                 Findings& findings);

    // Leaf names in the order of listings.
    std::vector<std::string> Files(const std::string& folder);
    std::vector<std::string> Folders(const std::string& folder);
    bool IsEmpty() { return Files("").empty() && Folders("").empty(); }
    // In bytes, as the directory of the ZIP file tells it; 0 for what is no file.
    std::uint64_t Size(const std::string& path);
    bool IsFile(const std::string& path);

    // Null when the part is not there or cannot be read. What was not known of it before is found
    // then.
    nuo::archive::archive_ptr Open(const std::string& path);
    std::optional<Bytes> Read(const std::string& path);
    bool IsUnreadable(const std::string& path) const { return unreadable_.contains(path); }
    void MarkUnreadable(const std::string& path) { unreadable_.insert(path); }

    // The folder of the library, and whether it is of the older layout; empty without one.
    const std::string& Identifier() const { return identifier_; }
    bool IsLegacy() const { return legacy_; }
    std::string Path(nuo::string_ref below) const { return identifier_ + "/" + Text(below); }

private:
    std::vector<std::string> Children(const std::string& folder, int state);

    velmor::fs::InMemory cache_;
    velmor::fs::ZipFs zip_;
    std::set<std::string> unreadable_;
    Findings& findings_;
    std::string identifier_;
    bool legacy_ = false;
};

// The messages of exceptions begin with a source position, which tells a user nothing.
std::string Words(const nuo::exception& failure);

// All bytes from the start.
Bytes ReadAll(nuo::archive::iarchive& file);

// Tests XML, finds where it stops being well formed, and returns whether it is.
bool CheckXml(PackageParts& parts, const std::string& path, const char* rule, bool closes,
              Findings& findings);

}  // namespace halvern::inspect
