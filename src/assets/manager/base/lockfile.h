#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// The right to write a library that several processes work on by private copies: an empty file
// beside the library, held open and locked; see docs/formats/lock_and_working_copy.md. It goes back
// with the object.
class LockFile {
public:
    LockFile() = default;
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    ~LockFile() { Release(); }

    // Takes the lock, or fails at once when somebody else holds it or when the file cannot be made.
    // A file that nobody holds is taken over. True when it is held already.
    bool Take(nuo::string_ref path);

    // Deletes the file. Does nothing when the lock is not held.
    void Release();

    bool Held() const { return handle_ >= 0; }

private:
    int handle_ = -1;
    nuo::string path_;
};

}  // namespace korvanet::platform::assets
