#pragma once

#include <vector>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// What a texture property asks of the installed texture library. The manager supplies it.
class ITextureRoots {
public:
    // Folder of the texture library without a trailing separator; empty when there is none.
    virtual nuo::string TextureRoot() = 0;

    // The variants of `name` that exist as files, from the smallest resolution to the largest:
    // root, "/", level, "/Mats/" and the name for the levels 1 to 4. Empty when there are none.
    virtual std::vector<nuo::string> ResolutionVariants(const nuo::string& name) = 0;

protected:
    ~ITextureRoots() = default;
};

}  // namespace korvanet::platform::assets
