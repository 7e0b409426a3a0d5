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

/// Creates an empty file; false when that fails. An existing file stays as it is, or is the failure
/// when the file `must_be_new`.
bool create_file(string_ref path, bool must_be_new);

/// Opens a file with the flags of open(2), always closed on exec; below zero when that fails.
int open_file(string_ref path, int flags);

}  // namespace nuo::fsutility
