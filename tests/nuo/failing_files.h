#pragma once

namespace nuo_tests {

/// While one of these lives, the call fails with EIO for every file. The linker turns the
/// library's calls to the ones that fail (`--wrap`).
class FailingCall {
public:
    enum What { fstat, mmap };

    explicit FailingCall(What what);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

private:
    bool& fails_;
};

}  // namespace nuo_tests
