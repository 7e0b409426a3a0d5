#pragma once

#include <filesystem>

#include "session.h"
#include "story.h"

namespace demo {

/// What a process that knows nothing of the editing finds in the library: the tiles with their
/// values, and the pictures of the content as resources.
Lines Reopen(const std::filesystem::path& library, const std::filesystem::path& content);

}  // namespace demo
