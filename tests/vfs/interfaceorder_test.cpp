#include "tests/support/virtualslots.h"
#include "velmor/vfs/vfs.h"

namespace {

using halvern_tests::kDestructor;
using halvern_tests::Place;
using velmor::fs::IVfs;

TEST(InterfaceOrder, FileSystem) {
    halvern_tests::ExpectOrder(
        0, {Place(&IVfs::remove), Place(&IVfs::createDir), Place(&IVfs::create), Place(&IVfs::copy),
            Place(&IVfs::truncate), Place(&IVfs::sync), Place(&IVfs::resource), Place(&IVfs::root),
            Place(&IVfs::mounted), Place(&IVfs::mountPoint), Place(&IVfs::children),
            Place(&IVfs::state), Place(&IVfs::getopt), Place(&IVfs::setopt), kDestructor,
            Place(&IVfs::setRoot)});
}

}  // namespace
