#pragma once

#include <set>
#include <utility>
#include <vector>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// What follows the last "." of a name; empty when nothing does.
nuo::string_ref ExtensionOf(nuo::string_ref leaf);

// The content type that a package lists for an extension, which is compared byte by byte.
const nuo::string& ContentTypeOf(nuo::string_ref extension);

// The extensions of a package's files, each once, in the order in which they were first added.
class ContentTypeSet {
public:
    // An empty extension is left out.
    void Add(nuo::string_ref extension);

    const std::vector<nuo::string>& Extensions() const { return extensions_; }

private:
    std::vector<nuo::string> extensions_;
    std::set<nuo::string, nuo::string_less> known_;
};

}  // namespace korvanet::platform::assets
