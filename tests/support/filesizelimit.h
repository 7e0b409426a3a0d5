#pragma once

#include <sys/resource.h>

#include <csignal>

namespace korvanet::platform::assets {

// No file of this process grows beyond a size while the object lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{size, former_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit former_{};
    void (*handler_)(int);
};

}  // namespace korvanet::platform::assets
