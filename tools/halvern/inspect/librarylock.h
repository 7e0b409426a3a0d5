#pragma once

#include <string>

#include "assets/manager/base/lockfile.h"

namespace halvern::inspect {

// The lock of a library, in the very form in which the library itself takes it, so that the two
// keep each other out. It goes back with the object.
class LibraryLock {
public:
    // `path` is that of the lock file. False, at once, when somebody else holds it.
    bool Take(const std::string& path);
    // Deletes the lock file.
    void Release() { file_.Release(); }

private:
    korvanet::platform::assets::LockFile file_;
};

}  // namespace halvern::inspect
