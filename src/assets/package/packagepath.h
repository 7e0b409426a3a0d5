#pragma once

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Names of the parts that a package keeps by itself, in every folder.
inline constexpr const char* kCorePart = "core.xml";
inline constexpr const char* kLinksPart = "cnx.xml";
inline constexpr const char* kContentTypesPart = "[Content_Types].xml";
inline constexpr const char* kFormatPart = "korvanet-design-package.xml";

bool IsReservedName(nuo::string_ref name);

// A path in its one form: no leading, double or trailing "/", the root being empty. A text that has
// this form already is viewed in place.
class PackagePath {
public:
    // `text` must outlive this object.
    explicit PackagePath(nuo::string_ref text);

    nuo::string_ref Ref() const { return ref_; }
    // All before the last "/"; empty for what stands in the root, and for the root.
    nuo::string_ref Folder() const;
    // The last component; empty for the root.
    nuo::string_ref Leaf() const;
    bool IsRoot() const { return ref_.empty(); }
    bool IsReserved() const { return IsReservedName(Leaf()); }

private:
    nuo::string made_;
    nuo::string_ref ref_;
};

// `folder` and `name` joined by "/", `name` alone in the root.
nuo::string ChildPath(nuo::string_ref folder, nuo::string_ref name);

}  // namespace korvanet::platform::assets
