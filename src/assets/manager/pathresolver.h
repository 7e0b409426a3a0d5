#pragma once

#include <vector>

#include <korvanet/platform/assets/ipathresolver.h>

#include "assets/asset/iurilocator.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// The search paths and resolvers of the process.
class PathResolver final : public IPathResolver, public IUriLocator {
public:
    // IPathResolver

    std::size_t GetSearchPathCount() const override { return paths_.size(); }
    bool GetSearchPath(std::size_t index, IString& path) const override;
    bool RemoveSearchPath(std::size_t index) override;
    bool AddSearchPath(const IString& path) override;
    bool InsertSearchPath(std::size_t index, const IString& path) override;
    bool Resolve(const IString& name, IString& resolved) const override;
    bool AddResolver(Resolver resolver) override;

    // IUriLocator
    bool Locate(const nuo::string& uri, nuo::string& path) override;

    // For the library's own use, in its own texts.

    bool Add(nuo::string_ref path) { return Insert(paths_.size(), path); }
    // Removes the first search path that is `path` byte for byte.
    bool Remove(nuo::string_ref path);
    // The path that a name means, resolvers included; empty when there is none.
    nuo::string Find(nuo::string_ref name) const;

private:
    bool Insert(std::size_t index, nuo::string_ref path);
    nuo::string FindOnDisk(nuo::string_ref name) const;
    bool AskResolvers(const IString& name, IString& resolved) const;

    std::vector<nuo::string> paths_;
    std::vector<Resolver> resolvers_;
};

}  // namespace korvanet::platform::assets
