#include "velmor/namespace.h"

#include "nuo/common/string_algo/tokenizer.h"
#include "nuo/common/string_builder.h"
#include "velmor/type_builder.h"

namespace velmor {
namespace {

template <class Map>
auto findIn(const Map& map, nuo::string_ref name) {
    const auto found = map.find(name);
    return found != map.end() ? found->second : typename Map::mapped_type();
}

/// Walks a map of a namespace and gives each entry as an element of a range.
template <class Element, class Map>
class EntryIterator {
public:
    explicit EntryIterator(typename Map::const_iterator at) : at_(at) {}

    Element operator*() const {
        if constexpr (std::is_same_v<Element, NameValuePair>) {
            return NameValuePair{&at_->first, at_->second};
        } else {
            return Element(at_->second);
        }
    }
    EntryIterator& operator++() {
        ++at_;
        return *this;
    }
    EntryIterator& operator--() {
        --at_;
        return *this;
    }
    friend bool operator==(const EntryIterator& left, const EntryIterator& right) {
        return left.at_ == right.at_;
    }

private:
    typename Map::const_iterator at_;
};

template <class Element, class Map>
nuo::const_range<Element, Element> rangeOver(const Map& map) {
    using Iterator = EntryIterator<Element, Map>;
    return nuo::make_range<Element, Element>(Iterator(map.begin()), Iterator(map.end()));
}

void appendPath(const NamespaceImp* space, nuo::string_builder& path) {
    if (space->parent == nullptr) return;
    appendPath(space->parent, path);
    path.append('.').append(space->name);
}

bool namesAnything(Namespace space, nuo::string_ref name) {
    return space.findChild(name).valid() || space.findType(name).valid() ||
           space.findAlias(name).valid();
}

/// The type that the tokens behind it select from `type`: arguments of arguments.
Type selectArgs(Type type, nuo::tokenizer& tokens) {
    nuo::string_ref token;
    while (type.valid() && tokens.next(token)) {
        const TypeArg* const arg = type.arg(token);
        type = arg != nullptr ? arg->type() : Type();
    }
    return type;
}

}  // namespace

nuo::string Namespace::fullName() const {
    if (imp_->parent == nullptr) return nuo::string(".");
    nuo::string_builder path;
    appendPath(imp_, path);
    return nuo::string(path);
}

Namespace Namespace::root() const {
    NamespaceImp* at = imp_;
    while (at->parent != nullptr)
        at = at->parent;
    return Namespace(at);
}

bool Namespace::empty() const {
    return imp_->types.empty() && imp_->children.empty() && imp_->aliases.empty() &&
           imp_->objects.empty();
}

Type Namespace::findType(nuo::string_ref name) const {
    return Type(findIn(imp_->types, name));
}

Namespace Namespace::findChild(nuo::string_ref name) const {
    return Namespace(findIn(imp_->children, name));
}

TypeAlias Namespace::findAlias(nuo::string_ref name) const {
    return TypeAlias(findIn(imp_->aliases, name));
}

NameValuePair Namespace::findObject(nuo::string_ref name) const {
    const auto found = imp_->objects.find(name);
    if (found == imp_->objects.end()) return NameValuePair();
    return NameValuePair{&found->first, found->second};
}

Type Namespace::findRealType(nuo::string_ref name) const {
    const Type type = findType(name);
    if (type.valid()) return type;
    const TypeAlias alias = findAlias(name);
    return alias.valid() ? alias.type() : Type();
}

nuo::const_range<Type, Type> Namespace::types() const {
    return rangeOver<Type>(imp_->types);
}

nuo::const_range<Namespace, Namespace> Namespace::children() const {
    return rangeOver<Namespace>(imp_->children);
}

nuo::const_range<TypeAlias, TypeAlias> Namespace::aliases() const {
    return rangeOver<TypeAlias>(imp_->aliases);
}

nuo::const_range<NameValuePair, NameValuePair> Namespace::objects() const {
    return rangeOver<NameValuePair>(imp_->objects);
}

Type Namespace::locateType(nuo::string_ref path) const {
    nuo::tokenizer tokens(path, '.');
    nuo::string_ref token;
    if (!tokens.next(token)) return Type();

    Namespace current = *this;
    if (token.empty()) {
        current = root();
        if (!tokens.next(token)) return Type();
    } else {
        while (current.valid() && !namesAnything(current, token))
            current = current.parent();
        if (!current.valid()) return Type();
    }

    for (Namespace child = current.findChild(token); child.valid();
         child = current.findChild(token)) {
        current = child;
        // The path named a namespace, which hides a type of that name.
        if (!tokens.next(token)) return Type();
    }
    return selectArgs(current.findRealType(token), tokens);
}

Namespace Namespace::locateNamespace(nuo::string_ref path) const {
    if (path == ".") return root();
    nuo::tokenizer tokens(path, '.');
    nuo::string_ref token;
    bool more = tokens.next(token);
    if (!more) return *this;

    Namespace current = *this;
    if (token.empty()) {
        current = root();
        more = tokens.next(token);
    } else {
        while (current.valid() && !current.findChild(token).valid())
            current = current.parent();
    }
    while (current.valid() && more) {
        current = current.findChild(token);
        more = tokens.next(token);
    }
    return current;
}

Namespace Namespace::createChild(nuo::string_ref path, char separator) const {
    nuo::tokenizer tokens(path, separator);
    nuo::string_ref token;
    Namespace current = *this;
    while (tokens.next(token)) {
        if (token.empty()) NUO_RAISE(invalid_namespace_path, "path contains empty name.", path);
        const Namespace child = current.findChild(token);
        current = child.valid() ? child : NamespaceBuilder().setName(token).adoptBy(current);
    }
    return current;
}

Namespace Namespace::adoptType(TypeBuilder& builder) const {
    builder.adoptBy(*this);
    return *this;
}

Namespace Namespace::adoptChild(NamespaceBuilder& builder) const {
    builder.adoptBy(*this);
    return *this;
}

Namespace Namespace::adoptAlias(TypeAliasBuilder& builder) const {
    builder.adoptBy(*this);
    return *this;
}

NamespaceImp::~NamespaceImp() {
    clear();
}

void NamespaceImp::clear() {
    name.clear();
    for (const auto& [key, child] : children)
        delete child;
    children.clear();
    for (const auto& [key, type] : types)
        delete type;
    types.clear();
    for (const auto& [key, alias] : aliases)
        delete alias;
    aliases.clear();
    parent = nullptr;
}

}  // namespace velmor
