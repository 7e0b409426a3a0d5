#include "command/running.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "tests/support/paths.h"

namespace halvern_tests {
namespace {

// Reads both until both are closed, so that neither fills up.
void ReadBoth(int out, int err, Ran& ran) {
    pollfd ends[2] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
    std::string* const texts[2] = {&ran.out, &ran.err};
    while (ends[0].fd >= 0 || ends[1].fd >= 0) {
        if (::poll(ends, 2, -1) < 0) continue;
        for (int at = 0; at < 2; ++at) {
            if (ends[at].fd < 0 || ends[at].revents == 0) continue;
            char buffer[4096];
            const ssize_t got = ::read(ends[at].fd, buffer, sizeof buffer);
            if (got > 0)
                texts[at]->append(buffer, static_cast<std::size_t>(got));
            else
                ends[at].fd = -1;
        }
    }
}

// The two ends of a terminal, in the order of those of a pipe.
bool OpenTerminal(int (&ends)[2]) {
    ends[0] = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (ends[0] < 0 || ::grantpt(ends[0]) != 0 || ::unlockpt(ends[0]) != 0) return false;
    ends[1] = ::open(::ptsname(ends[0]), O_RDWR | O_NOCTTY | O_CLOEXEC);
    return ends[1] >= 0;
}

}  // namespace

Running::Running(const std::vector<std::string>& arguments, const std::string& folder,
                 Limits limits) {
    int out[2];
    int err[2];
    if (::pipe2(out, O_CLOEXEC) != 0 ||
        !(limits.terminal ? OpenTerminal(err) : ::pipe2(err, O_CLOEXEC) == 0))
        throw std::runtime_error("no pipe");
    const std::string program = BuildFolder() + "/bin/halvern";
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::dup2(err[1], STDERR_FILENO);
        if (limits.full_output) ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        ::setenv("TMPDIR", folder.c_str(), 1);
        if (limits.file_size != 0) {
            const rlimit limit{limits.file_size, limits.file_size};
            ::setrlimit(RLIMIT_FSIZE, &limit);
        }
#ifndef __SANITIZE_ADDRESS__
        if (limits.memory != 0) {
            const rlimit limit{limits.memory, limits.memory};
            ::setrlimit(RLIMIT_AS, &limit);
        }
#endif
        std::vector<char*> texts{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments)
            texts.push_back(const_cast<char*>(argument.c_str()));
        texts.push_back(nullptr);
        if (::chdir(folder.c_str()) == 0) ::execv(program.c_str(), texts.data());
        ::_exit(127);
    }
    ::close(out[1]);
    ::close(err[1]);
    out_ = out[0];
    err_ = err[0];
}

Running::~Running() {
    CloseOutput();
    if (err_ >= 0) ::close(err_);
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
}

void Running::Signal(int number) const {
    ::kill(process_, number);
}

void Running::CloseOutput() {
    if (out_ >= 0) ::close(out_);
    out_ = -1;
}

Ran Running::Wait() {
    Ran ran{0, "", ""};
    ReadBoth(out_, err_, ran);
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    ran.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ran;
}

Ran RunHalvern(const std::vector<std::string>& arguments, const std::string& folder) {
    return Running(arguments, folder).Wait();
}

}  // namespace halvern_tests
