#pragma once

namespace vfs_tests {

// While one of these lives, zlib starts no stream, as when it has no memory. The linker turns the
// library's calls to the ones that fail (`--wrap`).
class NoZlib {
public:
    NoZlib();
    ~NoZlib();
    NoZlib(const NoZlib&) = delete;
    NoZlib& operator=(const NoZlib&) = delete;
};

// While one of these lives, zlib inflates nothing and answers with this code.
class InflateFails {
public:
    explicit InflateFails(int code);
    ~InflateFails();
    InflateFails(const InflateFails&) = delete;
    InflateFails& operator=(const InflateFails&) = delete;
};

}  // namespace vfs_tests
