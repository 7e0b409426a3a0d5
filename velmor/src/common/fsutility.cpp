#include "nuo/common/fsutility.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace nuo::fsutility {
namespace {

constexpr mode_t any_permission = 0666;  // the umask takes away from it, as for fopen

}  // namespace

std::optional<file_status> stat_file(string_ref path) {
    struct stat found;
    if (::stat(string(path).c_str(), &found) != 0) return std::nullopt;
    return file_status{static_cast<std::uint64_t>(found.st_size), S_ISDIR(found.st_mode),
                       S_ISREG(found.st_mode)};
}

bool create_file(string_ref path, bool must_be_new) {
    const int file = open_file(path, O_WRONLY | O_CREAT | (must_be_new ? O_EXCL : 0));
    if (file < 0) return false;
    ::close(file);
    return true;
}

int open_file(string_ref path, int flags) {
    const string terminated(path);
    int file;
    do {
        file = ::open(terminated.c_str(), flags | O_CLOEXEC, any_permission);
    } while (file < 0 && errno == EINTR);
    return file;
}

}  // namespace nuo::fsutility
