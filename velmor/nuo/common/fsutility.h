#pragma once

#include <cstdint>
#include <optional>

#include "nuo/common/string.h"

namespace nuo::fsutility {

/// What the stat call tells of a path, links followed; nothing when it fails.
struct file_status {
    std::uint64_t size = 0;
    bool is_directory = false;
    bool is_regular = false;
};
std::optional<file_status> stat_file(string_ref path);

/// Creates an empty file, or empties an existing one; false when that fails.
bool create_empty_file(string_ref path);

/// Opens a file with the flags of open(2), always closed on exec; below zero when that fails.
int open_file(string_ref path, int flags);

}  // namespace nuo::fsutility
