#pragma once

#include "nuo/common/exception.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

/// Raised when a child namespace of that name exists already.
NUO_DECLARE_EXCEPTION(namespace_creating_failed);

/// Makes the child `name` of `parent`. The name is taken as it is: a "." in it separates nothing.
velmor::Namespace CreateNamespace(velmor::Namespace parent, nuo::string_ref name);

/// The namespace of what belongs to no library, below the root.
inline constexpr nuo::string_ref kUserNamespace = "usr";
/// The one of instances among the namespaces of a library.
inline constexpr nuo::string_ref kInstanceNamespace = "tmpAsset";

/// The namespaces of one library, or of the set that all libraries share:
///
///     parent
///       <name>
///         schema     its schemas
///         asset      its definitions
///         tmpAsset   instances that were made from them
struct LibraryNamespaces {
    /// Makes the child `name` of `parent` with its three children.
    static LibraryNamespaces Create(velmor::Namespace parent, nuo::string_ref name);

    velmor::Namespace parent;
    velmor::Namespace own;
    velmor::Namespace schema;
    velmor::Namespace asset;
    velmor::Namespace tmpAsset;
};

}  // namespace korvanet::platform::assets
