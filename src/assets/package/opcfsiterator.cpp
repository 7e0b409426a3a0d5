#include "assets/package/opcfsiterator.h"

#include <utility>

#include "assets/package/packagepath.h"

namespace korvanet::platform::assets {

OpcFsIterator::OpcFsIterator(velmor::fs::IVfs& owner, Listing at, Listing last)
    : owner_(&owner), at_(std::move(at)), last_(std::move(last)) {
    SkipReserved();
}

velmor::fs::VfsNode OpcFsIterator::operator*() const {
    return {(*at_).path, owner_};
}

OpcFsIterator& OpcFsIterator::operator++() {
    ++at_;
    SkipReserved();
    return *this;
}

OpcFsIterator& OpcFsIterator::operator--() {
    do {
        --at_;
    } while (IsReservedName((*at_).path));
    return *this;
}

void OpcFsIterator::SkipReserved() {
    while (!(at_ == last_) && IsReservedName((*at_).path)) {
        ++at_;
    }
}

velmor::fs::VfsNodeRange OpcFsIterator::Filter(velmor::fs::IVfs& owner,
                                               const velmor::fs::VfsNodeRange& inner) {
    return nuo::make_range<velmor::fs::VfsNode, velmor::fs::VfsNode>(
        OpcFsIterator(owner, inner.first, inner.last),
        OpcFsIterator(owner, inner.last, inner.last));
}

}  // namespace korvanet::platform::assets
