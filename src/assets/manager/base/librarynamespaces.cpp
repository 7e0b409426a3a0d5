#include "assets/manager/base/librarynamespaces.h"

namespace korvanet::platform::assets {

velmor::Namespace CreateNamespace(velmor::Namespace parent, nuo::string_ref name) {
    if (parent.findChild(name).valid())
        NUO_RAISE(namespace_creating_failed, parent.fullName(),
                  " failed to create child namespace ", name);
    velmor::NamespaceBuilder builder;
    builder.setName(nuo::string(name));
    return builder.adoptBy(parent);
}

LibraryNamespaces LibraryNamespaces::Create(velmor::Namespace parent, nuo::string_ref name) {
    LibraryNamespaces group;
    group.parent = parent;
    group.own = CreateNamespace(parent, name);
    group.schema = CreateNamespace(group.own, "schema");
    group.asset = CreateNamespace(group.own, "asset");
    group.tmpAsset = CreateNamespace(group.own, kInstanceNamespace);
    return group;
}

}  // namespace korvanet::platform::assets
