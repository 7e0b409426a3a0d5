#pragma once

#include "nuo/common/string.h"

// The options of a package: single elements of its manifests, read with `JpkFs::getopt` and set
// with `JpkFs::setopt`. `data` holds an `option_key`, the value is an `option_value`; both travel
// in a `nuo::any`. docs/formats/manifests_and_options.md lists the options that libraries use.

namespace korvanet::platform::assets {

// An element of a folder's description; the path is that of the folder, empty for the root.
inline constexpr unsigned kPackageOption = 4096;

// An element of the entry that a file or folder has in the folder around it.
inline constexpr unsigned kPartOption = 4097;

struct option_key {
    nuo::string path;
    nuo::string name;  // may be empty: the element without a name
};

struct option_value {
    nuo::string type;  // the kind of the element; the empty word is stored as "name"
    nuo::string text;
};

}  // namespace korvanet::platform::assets
