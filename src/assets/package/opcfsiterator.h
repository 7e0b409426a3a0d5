#pragma once

#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

// A listing of a package: that of the file system below without the parts that the package keeps
// by itself. Nodes name the package as their owner.
class OpcFsIterator {
public:
    using Listing = decltype(velmor::fs::VfsNodeRange::first);

    OpcFsIterator(velmor::fs::IVfs& owner, Listing at, Listing last);

    velmor::fs::VfsNode operator*() const;
    OpcFsIterator& operator++();
    OpcFsIterator& operator--();
    friend bool operator==(const OpcFsIterator& a, const OpcFsIterator& b) {
        return a.at_ == b.at_;
    }

    // The whole listing of `inner`, as of `owner`.
    static velmor::fs::VfsNodeRange Filter(velmor::fs::IVfs& owner,
                                           const velmor::fs::VfsNodeRange& inner);

private:
    void SkipReserved();

    velmor::fs::IVfs* owner_;
    Listing at_;
    Listing last_;
};

}  // namespace korvanet::platform::assets
