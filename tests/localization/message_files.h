#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/in_memory_fs.h"

namespace halvern_tests {

// A folder of message files in memory that counts how often it is listed and read.
class MessageFolder : public velmor::fs::InMemory {
public:
    MessageFolder() : InMemory("messages") {}

    velmor::fs::VfsNodeRange children(nuo::string_ref path) override {
        ++listings;
        return InMemory::children(path);
    }
    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override {
        ++opens;
        return InMemory::create(path, mode, flag);
    }

    // Puts a file with this content.
    void Put(const char* name, std::string_view text) {
        const auto file = InMemory::create(name, velmor::fs::mode_all, velmor::fs::open_or_create);
        nuo::archive::write_all(*file->query_writer(), {text.data(), text.size()});
        file->query_writer()->truncate(text.size());
    }

    int listings = 0;
    int opens = 0;
};

// "<trans-unit>" with an id and a target, both as they stand.
inline std::string Unit(const std::string& id, const std::string& target) {
    return "<trans-unit id=\"" + id + "\"><source>" + id + "</source><target>" + target +
           "</target></trans-unit>";
}

inline std::string Xlf(const std::string& units) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><xliff version=\"1.2\"><file><body>" + units +
           "</body></file></xliff>";
}

}  // namespace halvern_tests
