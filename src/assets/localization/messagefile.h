#pragma once

#include <memory>

#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/vfs/vfs.h"

// A message file is named BASE "-" LOCALE ".XLF"; the case of a to z does not count.

namespace korvanet::platform::assets {

// A text with a to z as A to Z. One that has no such letter is viewed in place.
class UpperText {
public:
    // `text` must outlive this object.
    explicit UpperText(nuo::string_ref text);

    nuo::string_ref Ref() const { return ref_; }

private:
    nuo::string made_;
    nuo::string_ref ref_;
};

// Where the message files of a domain are.
class MessageSource {
public:
    // `base_name` is the file name that messages belong to; they are looked for under its stem
    // first and then under the whole name.
    MessageSource(std::weak_ptr<velmor::fs::IVfs> files, nuo::string_ref base_name);

    // The file system, or null when its owner let it go.
    std::shared_ptr<velmor::fs::IVfs> Files() const { return files_.lock(); }

    // The message file of an upper-case locale, open for reading, or null. `files` is what
    // `Files()` gave. Of several entries that match, the first by name.
    nuo::archive::archive_ptr Open(velmor::fs::IVfs& files, nuo::string_ref locale) const;

private:
    std::weak_ptr<velmor::fs::IVfs> files_;
    nuo::string stem_;
    nuo::string name_;
};

}  // namespace korvanet::platform::assets
