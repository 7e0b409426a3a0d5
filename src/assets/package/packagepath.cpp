#include "assets/package/packagepath.h"

#include "nuo/common/string_algo/tokenizer.h"

namespace korvanet::platform::assets {
namespace {

bool IsNormal(nuo::string_ref text) {
    bool after_separator = true;
    for (const char c : text) {
        if (c == '/' && after_separator) {
            return false;
        }
        after_separator = c == '/';
    }
    return text.empty() || !after_separator;
}

nuo::string Normalized(nuo::string_ref text) {
    nuo::string_builder path;
    nuo::tokenizer tokens(text, '/');
    nuo::string_ref token;
    while (tokens.next(token)) {
        if (!token.empty()) {
            path.append(path.empty() ? "" : "/").append(token);
        }
    }
    return nuo::string(path);
}

}  // namespace

bool IsReservedName(nuo::string_ref name) {
    return name == kCorePart || name == kLinksPart || name == kContentTypesPart ||
           name == kFormatPart;
}

PackagePath::PackagePath(nuo::string_ref text) : ref_(text) {
    if (!IsNormal(text)) {
        Normalized(text).swap(made_);
        ref_ = made_;
    }
}

nuo::string_ref PackagePath::Folder() const {
    const std::uint64_t cut = ref_.rfind('/');
    return cut == nuo::string_ref::npos ? nuo::string_ref() : ref_.substr(0, cut);
}

nuo::string_ref PackagePath::Leaf() const {
    const std::uint64_t cut = ref_.rfind('/');
    return cut == nuo::string_ref::npos ? ref_ : ref_.substr(cut + 1);
}

nuo::string ChildPath(nuo::string_ref folder, nuo::string_ref name) {
    if (folder.empty()) {
        return nuo::string(name);
    }
    nuo::string_builder path;
    path.reserve(folder.size() + 1 + name.size());
    path.append(folder).append('/').append(name);
    return nuo::string(path);
}

}  // namespace korvanet::platform::assets
