#include "assets/manager/base/path.h"

#include <algorithm>

#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {

namespace {

constexpr bool IsSeparator(char c) noexcept {
    return c == '/' || c == '\\';
}

// Cuts the next component, which may be empty, off the front of a path.
nuo::string_ref TakeComponent(nuo::string_ref& path) noexcept {
    const char* const end = std::find_if(path.begin(), path.end(), IsSeparator);
    const nuo::string_ref component(path.begin(), end);
    path = nuo::string_ref(end == path.end() ? end : end + 1, path.end());
    return component;
}

// Cuts what makes a path absolute off its front.
nuo::string_ref TakeRoot(nuo::string_ref& path) noexcept {
    if (!path.empty() && IsSeparator(path[0])) {
        const bool doubled = path.size() > 1 && path[1] == path[0];
        path = path.substr(doubled ? 2 : 1);
        return doubled ? "//" : "/";
    }
    return path.find(':') != nuo::string_ref::npos ? TakeComponent(path) : nuo::string_ref();
}

// The path in the making. `floor_` is where its removable components begin.
class PathWriter {
public:
    explicit PathWriter(nuo::string_ref root) : absolute_(!root.empty()) {
        text_.append(root);
        floor_ = text_.size();
    }

    void Add(nuo::string_ref component) {
        if (!text_.empty() && text_.c_str()[text_.size() - 1] != '/') text_.append('/');
        text_.append(component);
    }

    // False above a root.
    bool Up() {
        if (text_.size() > floor_) {
            const nuo::string_ref kept(text_.data() + floor_, text_.size() - floor_);
            const std::uint64_t last = kept.rfind('/');
            text_.resize(floor_ + (last == nuo::string_ref::npos ? 0 : last));
            return true;
        }
        if (absolute_) return false;
        Add("..");
        floor_ = text_.size();
        return true;
    }

    nuo::string Text() const { return nuo::string(text_); }

private:
    nuo::string_builder text_;
    std::uint64_t floor_ = 0;
    bool absolute_;
};

}  // namespace

bool IsAbsolutePath(nuo::string_ref path) noexcept {
    return !path.empty() && (IsSeparator(path[0]) || path.find(':') != nuo::string_ref::npos);
}

nuo::string NormalizePath(nuo::string_ref path) {
    PathWriter writer(TakeRoot(path));
    while (!path.empty()) {
        const nuo::string_ref component = TakeComponent(path);
        if (component.empty() || component == ".") continue;
        if (component != "..")
            writer.Add(component);
        else if (!writer.Up())
            return {};
    }
    return writer.Text();
}

nuo::string AppendPath(nuo::string_ref folder, nuo::string_ref name) {
    if (folder.empty()) return nuo::string(name);
    if (name.empty()) return nuo::string(folder);
    while (!folder.empty() && IsSeparator(folder.back()))
        folder = folder.substr(0, folder.size() - 1);
    while (!name.empty() && IsSeparator(name.front()))
        name = name.substr(1);
    nuo::string_builder joined;
    joined.reserve(folder.size() + 1 + name.size());
    joined.append(folder).append('/').append(name);
    return nuo::string(joined);
}

nuo::string_ref FolderOfPath(nuo::string_ref path) noexcept {
    const nuo::string_ref leaf = LeafOfPath(path);
    const std::uint64_t cut = path.size() - leaf.size();
    if (cut == 0) return {};
    return path.substr(0, cut == 1 ? 1 : cut - 1);
}

nuo::string_ref LeafOfPath(nuo::string_ref path) noexcept {
    const char* at = path.end();
    while (at != path.begin() && !IsSeparator(at[-1]))
        --at;
    return {at, path.end()};
}

nuo::string WithSlashes(nuo::string_ref path) {
    return nuo::string::filled(path.size(), [&](char* bytes) {
        std::replace_copy(path.begin(), path.end(), bytes, '\\', '/');
    });
}

}  // namespace korvanet::platform::assets
