#include "assets/manager/pathresolver.h"

#include <algorithm>

#include <korvanet/platform/core/utf8string.h>

#include "assets/manager/base/path.h"
#include "assets/manager/base/text.h"
#include "assets/manager/filestate.h"

namespace korvanet::platform::assets {
namespace {

nuo::string_ref WithoutLastSeparator(nuo::string_ref path) {
    const bool ends_so = !path.empty() && (path.back() == '/' || path.back() == '\\');
    return ends_so ? path.substr(0, path.size() - 1) : path;
}

// The normalized form of a path where a file or a folder is; empty otherwise.
nuo::string Present(nuo::string_ref path) {
    const nuo::string slashed = WithSlashes(path);
    return IsFolder(slashed) || IsRegularFile(slashed) ? NormalizePath(slashed) : nuo::string();
}

}  // namespace

bool PathResolver::GetSearchPath(std::size_t index, IString& path) const {
    if (index >= paths_.size()) return false;
    Assign(path, paths_[index]);
    return true;
}

bool PathResolver::RemoveSearchPath(std::size_t index) {
    if (index >= paths_.size()) return false;
    paths_.erase(paths_.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
}

bool PathResolver::AddSearchPath(const IString& path) {
    return Add(ToUtf8(path));
}

bool PathResolver::InsertSearchPath(std::size_t index, const IString& path) {
    return Insert(index, ToUtf8(path));
}

bool PathResolver::Resolve(const IString& name, IString& resolved) const {
    if (name.IsEmpty()) return false;
    const nuo::string found = FindOnDisk(ToUtf8(name));
    if (found.empty()) return AskResolvers(name, resolved);
    Assign(resolved, found);
    return true;
}

bool PathResolver::AddResolver(Resolver resolver) {
    const bool held = std::find(resolvers_.begin(), resolvers_.end(), resolver) != resolvers_.end();
    if (resolver != nullptr && !held) resolvers_.push_back(resolver);
    return true;
}

bool PathResolver::Locate(const nuo::string& uri, nuo::string& path) {
    const nuo::string found = Find(uri);
    if (found.empty()) return false;
    path = found;
    return true;
}

bool PathResolver::Remove(nuo::string_ref path) {
    const auto found = std::find_if(paths_.begin(), paths_.end(),
                                    [path](const nuo::string& held) { return held == path; });
    if (found == paths_.end()) return false;
    paths_.erase(found);
    return true;
}

nuo::string PathResolver::Find(nuo::string_ref name) const {
    if (name.empty()) return {};
    const nuo::string found = FindOnDisk(name);
    if (!found.empty()) return found;
    const nuo::string text(name);
    core::UTF8String resolved;
    return AskResolvers(core::UTF8String(text.data()), resolved) ? ToUtf8(resolved) : nuo::string();
}

bool PathResolver::Insert(std::size_t index, nuo::string_ref path) {
    if (path.size() > 1) path = WithoutLastSeparator(path);
    if (!IsAbsolutePath(path) || IsRegularFile(path)) return false;
    const std::size_t place = std::min(index, paths_.size());
    paths_.insert(paths_.begin() + static_cast<std::ptrdiff_t>(place), nuo::string(path));
    return true;
}

nuo::string PathResolver::FindOnDisk(nuo::string_ref name) const {
    name = WithoutLastSeparator(name);
    if (IsAbsolutePath(name)) return Present(name);
    for (const nuo::string& path : paths_) {
        nuo::string found = Present(AppendPath(path, name));
        if (!found.empty()) return found;
    }
    return {};
}

// By index, since a resolver may add another.
bool PathResolver::AskResolvers(const IString& name, IString& resolved) const {
    for (std::size_t index = 0; index < resolvers_.size(); ++index)
        if (resolvers_[index](name, resolved)) return true;
    return false;
}

}  // namespace korvanet::platform::assets
