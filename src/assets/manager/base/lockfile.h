#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// What became of a try to take a lock.
enum class LockResult {
    kTaken,
    kHeld,   // somebody else has it
    kNoFile  // the file cannot be opened or made; `errno` tells why
};

// The right to write a library that several processes work on by private copies: an empty file
// beside the library, held open and locked; see docs/formats/lock_and_working_copy.md. It goes back
// with the object.
class LockFile {
public:
    LockFile() = default;
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    ~LockFile() { Release(); }

    // Takes the lock, or fails at once. A file that nobody holds is taken over. kTaken, and nothing
    // is done, when this object holds one already.
    LockResult Take(nuo::string_ref path);

    // Deletes the file, unless another one stands in its place by now. Does nothing when the lock
    // is not held.
    void Release();

    bool Held() const { return handle_ >= 0; }

private:
    int handle_ = -1;
    nuo::string path_;
};

}  // namespace korvanet::platform::assets
