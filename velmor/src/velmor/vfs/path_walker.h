#pragma once

#include "nuo/common/string_algo/tokenizer.h"

namespace velmor::fs::private_ {

/// Hands out the components of a path as views of it. Empty ones are dropped: "/a//b/" gives a, b.
class PathWalker {
public:
    explicit PathWalker(nuo::string_ref path) noexcept : tokens_(path, '/') {}

    /// False when there is no further component; `component` is then left empty.
    bool next(nuo::string_ref& component) noexcept {
        while (tokens_.next(component))
            if (!component.empty()) return true;
        component = {};
        return false;
    }

private:
    nuo::tokenizer tokens_;
};

/// How many components a path has.
inline std::size_t countComponents(nuo::string_ref path) noexcept {
    PathWalker walker(path);
    nuo::string_ref component;
    std::size_t count = 0;
    while (walker.next(component))
        ++count;
    return count;
}

}  // namespace velmor::fs::private_
