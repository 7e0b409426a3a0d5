#pragma once

#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

// A file of the private temporary folder that stands in for the file of a library. It is deleted
// with this object; archives on it end before.
class WorkingCopy {
public:
    // An empty one. Raises nuo::archive::create_failed.
    explicit WorkingCopy(velmor::fs::IVfs& temp);
    // A copy of the file at `source`. Raises also when that cannot be read or not be held.
    WorkingCopy(velmor::fs::IVfs& temp, nuo::string_ref source);
    WorkingCopy(const WorkingCopy&) = delete;
    WorkingCopy& operator=(const WorkingCopy&) = delete;
    ~WorkingCopy();

    // Its place on the disk.
    nuo::string Path() const;

    // Null when it cannot be opened.
    nuo::archive::archive_ptr Open(bool for_writing) const;

private:
    velmor::fs::IVfs& temp_;
    nuo::string name_;
};

}  // namespace korvanet::platform::assets
