#include "tests/support/child.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>

namespace halvern_tests {

namespace {

constexpr uid_t kNobody = 65534;

bool WriteText(const char* path, const std::string& text) {
    std::ofstream out(path);
    out << text;
    return out.flush().good();
}

// Root of a namespace where this user is root.
bool BecomeRootOfNamespace() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    return ::unshare(CLONE_NEWUSER) == 0 && WriteText("/proc/self/setgroups", "deny") &&
           WriteText("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
           WriteText("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

}  // namespace

Child::Child(const std::function<bool(Child&)>& body) {
    if (::pipe(to_parent_) != 0 || ::pipe(to_child_) != 0) std::abort();
    process_ = ::fork();
    if (process_ != 0) {
        ::close(to_parent_[1]);
        ::close(to_child_[0]);
        return;
    }
    ::close(to_parent_[0]);
    ::close(to_child_[1]);
    int code = 2;
    try {
        code = body(*this) ? 0 : 1;
    } catch (...) {
        code = 3;
    }
    std::fflush(nullptr);
    ::_exit(code);
}

Child::~Child() {
    if (process_ > 0) Kill();
    ::close(to_parent_[0]);
    ::close(to_child_[1]);
}

bool Child::Await() {
    char turn = 0;
    return ::read(to_parent_[0], &turn, 1) == 1;
}

void Child::Continue() {
    const char turn = 1;
    if (::write(to_child_[1], &turn, 1) != 1) ADD_FAILURE() << "the child is gone";
}

void Child::HandOver() {
    char turn = 1;
    if (::write(to_parent_[1], &turn, 1) != 1 || ::read(to_child_[0], &turn, 1) != 1) ::_exit(4);
}

bool Child::EndedWell() {
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void Child::Kill() {
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, -1), nullptr, 0);
}

bool InChild(const std::function<bool()>& body) {
    return Child([&body](Child&) { return body(); }).EndedWell();
}

bool BecomeUser(uid_t user, const std::vector<gid_t>& groups) {
    return ::setgroups(groups.size(), groups.data()) == 0 && ::setgid(user) == 0 &&
           ::setuid(user) == 0;
}

bool DropToNobody() {
    return ::geteuid() != 0 || BecomeUser(kNobody, {});
}

bool EnterOwnMounts() {
    if (::geteuid() != 0 && !BecomeRootOfNamespace()) return false;
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount(nullptr, "/", nullptr, MS_PRIVATE | MS_REC, nullptr) == 0;
}

bool EnterRoot(const std::string& folder) {
    return EnterOwnMounts() && ::chroot(folder.c_str()) == 0 && ::chdir("/") == 0;
}

}  // namespace halvern_tests
