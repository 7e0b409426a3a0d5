#pragma once

#include "assets/manager/base/resourceprefix.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// The path inside the package. REQUIRES: IsResourceUri(uri).
nuo::string_ref ResourcePath(nuo::string_ref uri);

nuo::string MakeResourceUri(nuo::string_ref path);

// The path of a "file:///" URI: "file:///C:/a" gives "C:/a", "file:///home/a" gives "/home/a". Any
// other text as it is.
nuo::string_ref WithoutFileScheme(nuo::string_ref text);

// A text as one component of a path in a package and of a folder on disk: it can neither leave its
// place nor break the manifests. "/" becomes "%2F", "\" "%5C", "<" "%3C", a double quote "%22", "&"
// "%26", a control character its two digits; "." and ".." become "%2E" and "%2E%2E", and so do the
// dots of names that a package keeps for itself: "core%2Exml".
nuo::string PathComponent(nuo::string_ref text);

// A file name as a component, with "#" as "%23" besides. Empty for "", "." and "..", which name
// no file.
nuo::string ResourceFileName(nuo::string_ref leaf);

// "a.png" with 2 gives "a(2).png", "a" gives "a(2)".
nuo::string NumberedFileName(nuo::string_ref leaf, int number);

}  // namespace korvanet::platform::assets
