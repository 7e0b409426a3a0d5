#include "vfs/failing_zlib.h"

#include <zlib.h>

namespace {

bool fails = false;

}  // namespace

extern "C" {

int __real_inflateInit2_(z_streamp stream, int window, const char* version, int size);
int __real_deflateInit2_(z_streamp stream, int level, int method, int window, int memory,
                         int strategy, const char* version, int size);

int __wrap_inflateInit2_(z_streamp stream, int window, const char* version, int size) {
    return fails ? Z_MEM_ERROR : __real_inflateInit2_(stream, window, version, size);
}

int __wrap_deflateInit2_(z_streamp stream, int level, int method, int window, int memory,
                         int strategy, const char* version, int size) {
    return fails ? Z_MEM_ERROR
                 : __real_deflateInit2_(stream, level, method, window, memory, strategy, version,
                                        size);
}

}  // extern "C"

namespace vfs_tests {

NoZlib::NoZlib() {
    fails = true;
}

NoZlib::~NoZlib() {
    fails = false;
}

}  // namespace vfs_tests
