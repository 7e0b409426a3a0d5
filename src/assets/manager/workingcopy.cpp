#include "assets/manager/workingcopy.h"

#include "assets/library/bytecopy.h"
#include "assets/manager/tempfolder.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

constexpr nuo::string_ref kPrefix{"copy"};

}  // namespace

WorkingCopy::WorkingCopy(fs::IVfs& temp)
    : temp_(temp), name_(fs::createTempFile(temp, kCopyFolder, kPrefix).path) {}

// The delegated constructor is complete, so that the file goes when copying raises.
WorkingCopy::WorkingCopy(fs::IVfs& temp, nuo::string_ref source) : WorkingCopy(temp) {
    nuo::archive::file_read_archive from(source);
    const nuo::archive::archive_ptr to = Open(true);
    if (!to) NUO_RAISE(nuo::archive::create_failed);
    CopyAll(from, *to);
}

WorkingCopy::~WorkingCopy() {
    fs::recursiveRemove(temp_, name_);
}

nuo::string WorkingCopy::Path() const {
    return fs::joinPath(temp_.resource(), name_);
}

nuo::archive::archive_ptr WorkingCopy::Open(bool for_writing) const {
    const unsigned mode = for_writing ? fs::mode_all : fs::mode_read | fs::mode_random;
    return temp_.create(name_, mode, fs::open_existing);
}

}  // namespace korvanet::platform::assets
