#include "assets/package/opcfsiterator.h"

#include <utility>

#include "assets/package/packagepath.h"

namespace korvanet::platform::assets {

OpcFsIterator::OpcFsIterator(velmor::fs::IVfs& owner, velmor::fs::VfsNodeIterator at,
                             velmor::fs::VfsNodeIterator last)
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
    using velmor::fs::VfsNodeIterator;
    return {VfsNodeIterator(OpcFsIterator(owner, inner.first, inner.last)),
            VfsNodeIterator(OpcFsIterator(owner, inner.last, inner.last))};
}

}  // namespace korvanet::platform::assets
