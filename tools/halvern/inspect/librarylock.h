#pragma once

#include <string>

#include "assets/manager/base/lockfile.h"

namespace halvern::inspect {

// The lock of a library, in the very form in which the library itself takes it, so that the two
// keep each other out. It goes back with the object.
class LibraryLock {
public:
    using Result = korvanet::platform::assets::LockResult;

    // `path` is that of the lock file.
    Result Take(const std::string& path);
    // Deletes the lock file.
    void Release() { file_.Release(); }

private:
    korvanet::platform::assets::LockFile file_;
};

}  // namespace halvern::inspect
