#pragma once

#include "nuo/common/string_ref.h"

// What the disk says of a path. Links are followed.

namespace korvanet::platform::assets {

bool PathExists(nuo::string_ref path);
bool IsFolder(nuo::string_ref path);
bool IsRegularFile(nuo::string_ref path);

// Does the path lack the owner's permission to write? One that cannot be examined counts as
// writable.
bool IsReadOnlyFile(nuo::string_ref path);

// Tries it out: makes a file of a unique name and deletes it.
bool CanCreateFilesIn(nuo::string_ref folder);

}  // namespace korvanet::platform::assets
