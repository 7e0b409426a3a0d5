#include "interrupt.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "failure.h"

namespace halvern {
namespace {

constexpr int kSlots = 8;
// Deeper than any folder tree that the library makes in its scratch space.
constexpr int kDeepest = 300;

// What the handler reads. An empty path is a free slot.
char slots[kSlots][PATH_MAX];

// The kernel's record of a directory entry.
struct Entry {
    std::uint64_t inode;
    std::int64_t next;
    std::uint16_t size;
    std::uint8_t type;
    char name[1];
};

bool IsSelfOrParent(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

void RemoveTree(int parent, const char* name, int depth);

// Allocates nothing and calls only what a signal handler may call.
void RemoveEntries(int folder, int depth) {
    alignas(Entry) char buffer[2048];
    for (;;) {
        const long filled = ::syscall(SYS_getdents64, folder, buffer, sizeof buffer);
        if (filled <= 0) return;
        for (long at = 0; at < filled;) {
            const auto* entry = reinterpret_cast<const Entry*>(buffer + at);
            if (!IsSelfOrParent(entry->name)) RemoveTree(folder, entry->name, depth + 1);
            at += entry->size;
        }
    }
}

void RemoveTree(int parent, const char* name, int depth) {
    if (::unlinkat(parent, name, 0) == 0 || depth > kDeepest) return;
    const int folder = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) return;
    RemoveEntries(folder, depth);
    ::close(folder);
    ::unlinkat(parent, name, AT_REMOVEDIR);
}

void EndProcess(int signal) {
    for (const char* path : slots)
        if (*path != '\0') RemoveTree(AT_FDCWD, path, 0);
    ::_exit(128 + signal);
}

sigset_t Interrupts() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGHUP);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGQUIT);
    sigaddset(&set, SIGTERM);
    return set;
}

}  // namespace

void HandleInterrupts() {
    struct sigaction end {};
    end.sa_handler = EndProcess;
    end.sa_mask = Interrupts();
    ::sigaction(SIGINT, &end, nullptr);
    ::sigaction(SIGQUIT, &end, nullptr);
    ::sigaction(SIGTERM, &end, nullptr);
    // Who starts a run that shall outlive its terminal has it ignored already.
    struct sigaction hangup {};
    if (::sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN)
        ::sigaction(SIGHUP, &end, nullptr);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignore, nullptr);
    ::sigaction(SIGXFSZ, &ignore, nullptr);
}

SignalPause::SignalPause() {
    const sigset_t set = Interrupts();
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

SignalPause::~SignalPause() {
    const sigset_t set = Interrupts();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

Temporary::Temporary(const std::string& path) : path_(path) {
    if (path.size() >= PATH_MAX) throw Failure(kFile, SystemWords(ENAMETOOLONG));
    for (slot_ = 0; slot_ < kSlots && slots[slot_][0] != '\0';)
        ++slot_;
    if (slot_ == kSlots) throw Failure(kFile, "too many temporary files");
    // The first byte comes last: the handler may look at any moment.
    std::memcpy(slots[slot_] + 1, path.c_str() + 1, path.size());
    slots[slot_][0] = path[0];
}

Temporary::Temporary(Temporary&& other) noexcept
    : path_(std::move(other.path_)), slot_(std::exchange(other.slot_, -1)) {}

Temporary& Temporary::operator=(Temporary&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(slot_, other.slot_);
    return *this;
}

Temporary Temporary::Make(std::string path, bool folder) {
    const SignalPause pause;
    int handle = -1;
    const bool made = folder ? ::mkdtemp(path.data()) != nullptr
                             : (handle = ::mkostemp(path.data(), O_CLOEXEC)) >= 0;
    if (!made)
        throw Failure(kFile, "a temporary file cannot be made in " +
                                 path.substr(0, path.rfind('/')) + ": " + SystemWords(errno));
    if (handle >= 0) ::close(handle);
    return Temporary(path);
}

Temporary Temporary::MakeFile(std::string path) {
    return Make(std::move(path), false);
}

Temporary Temporary::MakeFolder(std::string path) {
    return Make(std::move(path), true);
}

void Temporary::Remove() {
    if (slot_ < 0) return;
    RemoveTree(AT_FDCWD, path_.c_str(), 0);
    Keep();
}

void Temporary::Keep() {
    if (slot_ < 0) return;
    slots[slot_][0] = '\0';
    slot_ = -1;
}

}  // namespace halvern
