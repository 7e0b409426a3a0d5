#include "process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>

namespace demo {
namespace {

std::string ReadAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer;
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

Lines SplitLines(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Starts the command with both its outputs on `output`.
pid_t Start(const std::vector<std::string>& command, int output) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? child : 0;
}

}  // namespace

Outcome RunProgram(const std::vector<std::string>& command) {
    std::fflush(stdout);
    int ends[2];
    Require(pipe2(ends, O_CLOEXEC) == 0, "no pipe could be made");
    const pid_t child = Start(command, ends[1]);
    close(ends[1]);
    const std::string text = child != 0 ? ReadAll(ends[0]) : std::string();
    close(ends[0]);
    Require(child != 0, command[0] + " could not be started");

    int status = 0;
    Require(waitpid(child, &status, 0) == child && WIFEXITED(status),
            command[0] + " did not come to its end");
    return {SplitLines(text), WEXITSTATUS(status)};
}

}  // namespace demo
