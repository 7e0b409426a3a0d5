#include "platform/core/randombytes.h"

#include <pthread.h>
#include <sys/random.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace korvanet::platform::core {

namespace {

struct Pool {
    unsigned char bytes[1024];
    std::size_t left;
    unsigned process;
};

constinit thread_local Pool pool{};

// Counts the forks that lie between this process and the one that loaded the library. Bytes that
// were fetched before a fork belong to the parent.
std::atomic<unsigned> forks{0};

[[maybe_unused]] const int fork_handler = pthread_atfork(nullptr, nullptr, [] { ++forks; });

void Refill(unsigned process) {
    std::size_t filled = 0;
    while (filled != sizeof(pool.bytes)) {
        const ssize_t got = getrandom(pool.bytes + filled, sizeof(pool.bytes) - filled, 0);
        if (got > 0)
            filled += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            throw std::system_error(errno, std::system_category(), "getrandom");
    }
    pool.left = sizeof(pool.bytes);
    pool.process = process;
}

}  // namespace

void FillRandom(void* target, std::size_t size) {
    auto* out = static_cast<unsigned char*>(target);
    const unsigned process = forks.load(std::memory_order_relaxed);
    while (size != 0) {
        if (pool.left == 0 || pool.process != process) Refill(process);
        const std::size_t count = std::min(size, pool.left);
        pool.left -= count;
        std::memcpy(out, pool.bytes + pool.left, count);
        out += count;
        size -= count;
    }
}

}  // namespace korvanet::platform::core
