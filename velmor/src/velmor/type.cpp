#include "velmor/type.h"

#include <algorithm>

#include "nuo/common/string_algo/tokenizer.h"
#include "nuo/common/string_builder.h"
#include "velmor/namespace.h"

namespace velmor {
namespace {

/// Writes the names from below the root down to `space`, each with "." behind it.
void appendParents(const NamespaceImp* space, nuo::string_builder& path) {
    if (space->parent != nullptr) appendParents(space->parent, path);
    path.append(space->name).append('.');
}

template <class Items>
auto findByName(const Items& items, std::uint64_t from, nuo::string_ref name) {
    const auto found = std::find_if(items.begin() + static_cast<std::ptrdiff_t>(from), items.end(),
                                    [name](const auto& item) { return item.name() == name; });
    return found == items.end() ? nullptr : &*found;
}

}  // namespace

nuo::string Type::fullName() const {
    if (imp_->parent == nullptr) return imp_->name;
    nuo::string_builder path;
    appendParents(imp_->parent, path);
    path.append(imp_->name);
    return nuo::string(path);
}

Namespace Type::parent() const {
    return Namespace(imp_->parent);
}

nuo::const_range<TypeItem> Type::members() const {
    return nuo::make_range<TypeItem>(imp_->items.begin(), imp_->items.end());
}

const TypeItem* Type::member(nuo::string_ref name) const {
    return findByName(imp_->items, imp_->baseCount, name);
}

nuo::const_range<TypeArg> Type::args() const {
    return nuo::make_range<TypeArg>(imp_->args.begin(), imp_->args.end());
}

const TypeArg* Type::arg(nuo::string_ref name) const {
    return findByName(imp_->args, 0, name);
}

Type Type::locateType(nuo::string_ref path) const {
    const auto locateAround = [this, path] {
        return parent().valid() ? parent().locateType(path) : Type();
    };
    if (path.starts_with(".")) return locateAround();

    nuo::tokenizer tokens(path, '.');
    nuo::string_ref token;
    const TypeArg* found = tokens.next(token) ? arg(token) : nullptr;
    if (found == nullptr) return locateAround();

    Type current = found->type();
    while (current.valid() && tokens.next(token)) {
        found = current.arg(token);
        current = found != nullptr ? found->type() : Type();
    }
    return current;
}

const nuo::string& TypeAlias::name() const {
    return imp_->name;
}
const nuo::string& TypeAlias::typeName() const {
    return imp_->typeName;
}
Type TypeAlias::type() const {
    return imp_->type;
}
Namespace TypeAlias::parent() const {
    return Namespace(imp_->parent);
}

}  // namespace velmor
