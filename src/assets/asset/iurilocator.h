#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

/** Finds the file that a URI of an asset means. The path resolver supplies it. */
class IUriLocator {
public:
    /** The path of a file that exists; false, and `path` as it was, when there is none. */
    virtual bool Locate(const nuo::string& uri, nuo::string& path) = 0;

protected:
    ~IUriLocator() = default;
};

}  // namespace korvanet::platform::assets
