#include "velmor/namespace.h"

#include <utility>

namespace velmor {
namespace {

template <class Map>
void mergeInto(Map& target, const Map& source) {
    for (const auto& [name, entry] : source) {
        if (!target.emplace(name, entry).second) {
            // The misspelt text is kept on purpose.
            NUO_RAISE(conflict_namespace_child_name, "name existed in target namesapce", name);
        }
    }
}

template <class Map>
void setParents(const Map& moved, NamespaceImp* parent) {
    for (const auto& [name, entry] : moved)
        entry->parent = parent;
}

}  // namespace

NamespaceBuilder::NamespaceBuilder() : imp_(std::make_unique<NamespaceImp>()) {}

NamespaceBuilder::~NamespaceBuilder() = default;

NamespaceBuilder& NamespaceBuilder::setName(nuo::string name) {
    imp_->name = std::move(name);
    return *this;
}

NamespaceBuilder& NamespaceBuilder::setParent(Namespace parent) {
    imp_->parent = parent.imp();
    return *this;
}

Namespace NamespaceBuilder::adoptBy(Namespace parent) {
    setParent(parent);
    return adoptBy();
}

Namespace NamespaceBuilder::adoptBy() {
    auto fresh = std::make_unique<NamespaceImp>();
    if (imp_->parent != nullptr) imp_->parent->children.emplace(imp_->name, imp_.get());
    NamespaceImp* const built = imp_.release();
    imp_ = std::move(fresh);
    return Namespace(built);
}

void NamespaceBuilder::adoptChildrenBy(Namespace target) {
    NamespaceImp& into = *target.imp();
    auto types = into.types;
    auto children = into.children;
    auto aliases = into.aliases;
    auto objects = into.objects;
    mergeInto(types, imp_->types);
    mergeInto(children, imp_->children);
    mergeInto(aliases, imp_->aliases);
    mergeInto(objects, imp_->objects);

    // From here on nothing raises.
    into.types.swap(types);
    into.children.swap(children);
    into.aliases.swap(aliases);
    into.objects.swap(objects);
    setParents(imp_->types, &into);
    setParents(imp_->children, &into);
    setParents(imp_->aliases, &into);
    imp_->types.clear();
    imp_->children.clear();
    imp_->aliases.clear();
    imp_->objects.clear();
}

}  // namespace velmor
