#include "nuo/failing_files.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>

namespace {

bool fails[2] = {false, false};

}  // namespace

extern "C" {

int __real_fstat(int file, struct stat* found);
void* __real_mmap(void* address, size_t length, int protection, int flags, int file, off_t offset);

int __wrap_fstat(int file, struct stat* found) {
    if (!fails[nuo_tests::FailingCall::fstat]) return __real_fstat(file, found);
    errno = EIO;
    return -1;
}

void* __wrap_mmap(void* address, size_t length, int protection, int flags, int file, off_t offset) {
    if (!fails[nuo_tests::FailingCall::mmap] || file < 0)
        return __real_mmap(address, length, protection, flags, file, offset);
    errno = EIO;
    return MAP_FAILED;
}

}  // extern "C"

namespace nuo_tests {

FailingCall::FailingCall(What what) : fails_(fails[what]) {
    fails_ = true;
}

FailingCall::~FailingCall() {
    fails_ = false;
}

}  // namespace nuo_tests
