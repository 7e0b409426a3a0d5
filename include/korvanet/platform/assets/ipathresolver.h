#pragma once

#include <cstddef>

#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::assets {

using core::IString;

/// Finds the file or folder that a relative name means: below the search paths, then by asking the
/// host. Opening a library adds its ".qmm" folder and the texture library; unloading takes the
/// former away again. Paths that come out use "/".
class IPathResolver {
public:
    /// A host's own way to find `name`. True when it wrote the path to `resolved`.
    using Resolver = bool (*)(const IString& name, IString& resolved);

    virtual std::size_t GetSearchPathCount() const = 0;

    /// These are false past the end; removing moves the rest down.
    virtual bool GetSearchPath(std::size_t index, IString& path) const = 0;
    virtual bool RemoveSearchPath(std::size_t index) = 0;

    /// Adds a folder behind the others, or before the one at `index` (at or past the end: behind).
    /// One separator at the end is dropped. False for a path that is relative or names a file; a
    /// path where nothing exists is taken.
    virtual bool AddSearchPath(const IString& path) = 0;
    virtual bool InsertSearchPath(std::size_t index, const IString& path) = 0;

    /// Gives the normalized path of what `name` means. A relative name is tried below each search
    /// path in order, an absolute one as it stands; then the resolvers are asked in order of
    /// adding. False when nothing is found, and for an empty name.
    virtual bool Resolve(const IString& name, IString& resolved) const = 0;

    /// Adds a resolver; one that is there already is not added again. Always true.
    virtual bool AddResolver(Resolver resolver) = 0;

    virtual ~IPathResolver() = default;
};

}  // namespace korvanet::platform::assets
