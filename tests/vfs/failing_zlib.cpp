#include "vfs/failing_zlib.h"

#include <zlib.h>

namespace {

bool fails = false;
int inflate_code = Z_OK;

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

int __real_inflate(z_streamp stream, int flush);

int __wrap_inflate(z_streamp stream, int flush) {
    return inflate_code != Z_OK ? inflate_code : __real_inflate(stream, flush);
}

}  // extern "C"

namespace vfs_tests {

NoZlib::NoZlib() {
    fails = true;
}

NoZlib::~NoZlib() {
    fails = false;
}

InflateFails::InflateFails(int code) {
    inflate_code = code;
}

InflateFails::~InflateFails() {
    inflate_code = Z_OK;
}

}  // namespace vfs_tests
