#include "inspect/librarylock.h"

namespace halvern::inspect {

LibraryLock::Result LibraryLock::Take(const std::string& path) {
    return file_.Take(nuo::string_ref(std::string_view(path)));
}

}  // namespace halvern::inspect
