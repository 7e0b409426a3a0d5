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

// The numbers cross the interface: callers hold them as plain integers.

TEST(InterfaceNumbers, ResultsOfAFileSystem) {
    using namespace velmor::fs;
    EXPECT_EQ(int{er_ok}, 0);
    EXPECT_EQ(int{er_invalid}, 1);
    EXPECT_EQ(int{er_busy_mounted}, 2);
    EXPECT_EQ(int{er_not_found}, 3);
    EXPECT_EQ(int{er_exist}, 4);
    EXPECT_EQ(int{er_not_mount_point}, 6);
    EXPECT_EQ(int{er_data_error}, 9);
    EXPECT_EQ(int{er_open_failed}, 10);
    EXPECT_EQ(int{er_not_a_file}, 12);
    EXPECT_EQ(int{er_permission_denied}, 14);
    EXPECT_EQ(int{er_not_empty}, 15);
}

TEST(InterfaceNumbers, StatesOfANode) {
    EXPECT_EQ(velmor::fs::state_invalid, 0);
    EXPECT_EQ(velmor::fs::state_file, 1);
    EXPECT_EQ(velmor::fs::state_directory, 2);
    EXPECT_EQ(velmor::fs::state_mount_point, 6);
    EXPECT_EQ(velmor::fs::state_not_found, 7);
}

TEST(InterfaceNumbers, BitsOfAMode) {
    EXPECT_EQ(velmor::fs::mode_random, 2u);
    EXPECT_EQ(velmor::fs::mode_read, 4u);
    EXPECT_EQ(velmor::fs::mode_write, 8u);
    EXPECT_EQ(velmor::fs::mode_all, 14u);
}

TEST(InterfaceNumbers, WaysToCreate) {
    EXPECT_EQ(velmor::fs::open_existing, 0u);
    EXPECT_EQ(velmor::fs::create_new, 1u);
    EXPECT_EQ(velmor::fs::open_or_create, 2u);
}

TEST(InterfaceNumbers, OptionsOfFileSystems) {
    EXPECT_EQ(velmor::fs::option_read_only, 1u);
    EXPECT_EQ(velmor::fs::option_commit_on_close, 2u);
}

}  // namespace
