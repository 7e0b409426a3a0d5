#pragma once

#include <map>
#include <memory>

#include "nuo/common/exception.h"
#include "nuo/common/iterator.h"
#include "nuo/common/string.h"
#include "velmor/forward.h"
#include "velmor/object.h"
#include "velmor/type.h"

namespace velmor {

/// Raised by `Namespace::createChild` on a path with an empty name.
NUO_DECLARE_EXCEPTION(invalid_namespace_path);
/// Raised by `NamespaceBuilder::adoptChildrenBy` on a name that the target has already.
NUO_DECLARE_EXCEPTION(conflict_namespace_child_name);

/// What the object iterators yield. `name` points to the key in the namespace.
struct NameValuePair {
    const nuo::string* name = nullptr;
    Object value;
};

/// Handle of a node of the tree that keeps types, aliases, child namespaces and named objects, four
/// kinds with name spaces of their own. Null is the invalid namespace.
///
/// Paths are names joined by "."; one that starts with a dot is absolute:
///
///     "."         the root                        "a.b"   `b` in the nearest `a` up the tree
///     ".sys.ref"  `ref` in `sys` under the root   ""      nothing
///
/// Lookups never raise: the invalid handle is the answer to a name that is not there.
class Namespace {
public:
    Namespace() = default;
    explicit Namespace(NamespaceImp* imp) : imp_(imp) {}

    bool valid() const { return imp_ != nullptr; }
    NamespaceImp* imp() const { return imp_; }

    /// The simple name; empty at the root.
    const nuo::string& name() const;
    /// The path from the root, such as ".a.b"; "." at the root.
    nuo::string fullName() const;
    Namespace parent() const;
    Namespace root() const;
    /// True when the namespace holds nothing of any kind.
    bool empty() const;

    Type findType(nuo::string_ref name) const;
    Namespace findChild(nuo::string_ref name) const;
    TypeAlias findAlias(nuo::string_ref name) const;
    /// A pair with a null name and an invalid value when absent.
    NameValuePair findObject(nuo::string_ref name) const;
    /// The type of that name, or else the target of the alias of that name, which may be invalid.
    Type findRealType(nuo::string_ref name) const;

    /// The contents in the order of their names. A range ends with the next change of its kind.
    nuo::const_range<Type, Type> types() const;
    nuo::const_range<Namespace, Namespace> children() const;
    nuo::const_range<TypeAlias, TypeAlias> aliases() const;
    nuo::const_range<NameValuePair, NameValuePair> objects() const;

    /// Finds a type by path. A relative path starts at the nearest namespace, this one or one above
    /// it, in which its first name stands for anything but an object; from there a child namespace
    /// hides a type of the same name. Names behind the type select its arguments:
    /// ".sys.ref.ref_type".
    Type locateType(nuo::string_ref path) const;
    /// Finds a namespace by path; a relative path starts at the nearest namespace, this one or one
    /// above it, with a child of its first name. The empty path is this namespace itself.
    Namespace locateNamespace(nuo::string_ref path) const;

    /// Enters, and makes where they are missing, the namespaces of a path below this one, and gives
    /// the last. An empty name raises `invalid_namespace_path`; what was made before it stays.
    Namespace createChild(nuo::string_ref path, char separator) const;

    /// Shortcuts for `adoptBy` of the builders; each gives this namespace.
    Namespace adoptType(TypeBuilder& builder) const;
    Namespace adoptChild(NamespaceBuilder& builder) const;
    Namespace adoptAlias(TypeAliasBuilder& builder) const;

    friend bool operator==(Namespace left, Namespace right) { return left.imp_ == right.imp_; }
    friend bool operator!=(Namespace left, Namespace right) { return left.imp_ != right.imp_; }

private:
    NamespaceImp* imp_ = nullptr;
};

/// What a `Namespace` points to. It owns its types, children and aliases. Of its objects it holds
/// the views alone: values are released by `Runtime`, and one that is still here when the record
/// goes is not destroyed.
struct NamespaceImp {
    template <class T>
    using Map = std::map<nuo::string, T, nuo::string_less>;

    NamespaceImp() = default;
    NamespaceImp(const NamespaceImp&) = delete;
    NamespaceImp& operator=(const NamespaceImp&) = delete;
    ~NamespaceImp();

    /// Destroys what the record owns and forgets its name and parent. Objects are left alone.
    void clear();

    nuo::string name;
    Map<TypeImp*> types;
    Map<NamespaceImp*> children;
    Map<TypeAliasImp*> aliases;
    Map<Object> objects;
    NamespaceImp* parent = nullptr;
};

inline const nuo::string& Namespace::name() const {
    return imp_->name;
}
inline Namespace Namespace::parent() const {
    return Namespace(imp_->parent);
}

/// Makes namespaces. It starts with an empty record and has a new one after each `adoptBy`.
class NamespaceBuilder {
public:
    NamespaceBuilder();
    NamespaceBuilder(const NamespaceBuilder&) = delete;
    NamespaceBuilder& operator=(const NamespaceBuilder&) = delete;
    ~NamespaceBuilder();

    NamespaceBuilder& setName(nuo::string name);
    /// Sets the target of `adoptBy()`; inserts nothing.
    NamespaceBuilder& setParent(Namespace parent);
    /// The namespace in the making.
    Namespace get() const { return Namespace(imp_.get()); }

    /// Hands the namespace to `parent`, which owns it from then on. The caller tests first that the
    /// name is free: where it is taken the old child stays, and the new one belongs to nobody.
    Namespace adoptBy(Namespace parent);
    /// The same with the parent that was set.
    Namespace adoptBy();

    /// Moves everything of the namespace in the making into `target`, or nothing: a name that the
    /// target has already for the same kind raises `conflict_namespace_child_name` and leaves both
    /// as they were. The builder keeps its emptied record.
    void adoptChildrenBy(Namespace target);

private:
    std::unique_ptr<NamespaceImp> imp_;
};

}  // namespace velmor
