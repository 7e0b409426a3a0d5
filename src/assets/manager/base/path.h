#pragma once

#include "nuo/common/string.h"

// Paths as text; nothing here looks at a disk. Both "/" and "\" separate; NormalizePath and
// WithSlashes leave only "/", the others keep what stands inside of what they are given.

namespace korvanet::platform::assets {

/// A path that begins with a separator, or that holds a ":" anywhere: a drive or a URI.
bool IsAbsolutePath(nuo::string_ref path) noexcept;

/// The one form of a path, by which two paths are compared: without ".", "..", empty components and
/// a separator at the end.
///
///     root          is kept as     "/a"      "/a"
///     double root   is kept as     "//a"     "\\a"
///     drive         first component of a path with a ":" and no root: "C:\a" gives "C:/a"
///
/// A ".." removes the component before it. Above the start of a relative path it stays; above a
/// root there is nothing, and the result is empty.
nuo::string NormalizePath(nuo::string_ref path);

/// `folder` and `name` with exactly one "/" between them. One of them alone when the other is
/// empty.
nuo::string AppendPath(nuo::string_ref folder, nuo::string_ref name);

/// What stands before the last separator: the folder that the path lies in. "/" for a path directly
/// below the root, empty for a path of one component.
nuo::string_ref FolderOfPath(nuo::string_ref path) noexcept;

/// What stands behind the last separator.
nuo::string_ref LeafOfPath(nuo::string_ref path) noexcept;

/// The path with every "\" as "/".
nuo::string WithSlashes(nuo::string_ref path);

}  // namespace korvanet::platform::assets
