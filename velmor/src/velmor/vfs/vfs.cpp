#include "velmor/vfs/vfs.h"

namespace velmor::fs {

nuo::any IVfs::getopt(unsigned, const nuo::any&) {
    return {};
}

nuo::any IVfs::setopt(unsigned, const nuo::any&, const nuo::any&) {
    return {};
}

}  // namespace velmor::fs
