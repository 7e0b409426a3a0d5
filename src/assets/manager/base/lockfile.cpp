#include "assets/manager/base/lockfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace korvanet::platform::assets {
namespace {

// Chosen: each round lost means that another holder came and went between two calls.
constexpr int kRounds = 16;

// A process may have the file open without the advisory lock; the kernel then refuses a write
// lease. Where leases are not to be had (another file system, another owner) the advisory lock
// alone decides.
bool OpenElsewhere(int handle) {
    // The lease signal is one that is ignored by default, in case somebody opens the file in this
    // very moment.
    ::fcntl(handle, F_SETSIG, SIGURG);
    if (::fcntl(handle, F_SETLEASE, F_WRLCK) == 0) {
        ::fcntl(handle, F_SETLEASE, F_UNLCK);
        return false;
    }
    return errno == EAGAIN;
}

// A holder unlinks the file before it closes it, so what was just locked may have lost its name.
bool StandsAt(int handle, const char* path) {
    struct stat open_file {};
    struct stat named_file {};
    return ::fstat(handle, &open_file) == 0 && ::stat(path, &named_file) == 0 &&
           open_file.st_dev == named_file.st_dev && open_file.st_ino == named_file.st_ino;
}

}  // namespace

LockResult LockFile::Take(nuo::string_ref path) {
    if (Held()) return LockResult::kTaken;
    const nuo::string name(path);
    for (int round = 0; round < kRounds; ++round) {
        // Opening waits for as long as somebody else has a lease, unless it is told not to.
        const int handle = ::open(name.data(), O_CREAT | O_RDWR | O_CLOEXEC | O_NONBLOCK, 0666);
        if (handle < 0) return errno == EWOULDBLOCK ? LockResult::kHeld : LockResult::kNoFile;
        const int refused = ::flock(handle, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
        if (refused != 0 && refused != EWOULDBLOCK) {
            // Without locks on the file system nobody holds one, and the file is of no use. After
            // any other failure it may be somebody's.
            if (refused == EOPNOTSUPP || refused == ENOSYS) ::unlink(name.data());
            ::close(handle);
            errno = refused;
            return LockResult::kNoFile;
        }
        if (refused != 0 || OpenElsewhere(handle)) {
            ::close(handle);
            return LockResult::kHeld;
        }
        if (StandsAt(handle, name.data())) {
            handle_ = handle;
            path_ = name;
            return LockResult::kTaken;
        }
        ::close(handle);
    }
    return LockResult::kHeld;
}

void LockFile::Release() {
    if (!Held()) return;
    // Somebody may have deleted the file by hand, and another holder made a new one.
    if (StandsAt(handle_, path_.data())) ::unlink(path_.data());
    ::close(handle_);
    handle_ = -1;
}

}  // namespace korvanet::platform::assets
