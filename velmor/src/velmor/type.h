#pragma once

#include <cstdint>
#include <vector>

#include "nuo/common/iterator.h"
#include "nuo/common/string.h"
#include "velmor/forward.h"
#include "velmor/typeinfo.h"

namespace velmor {

/// Handle of a type record: what a block of bytes means. Null is the invalid type.
class Type {
public:
    Type() = default;
    explicit Type(TypeImp* imp) : imp_(imp) {}

    bool valid() const { return imp_ != nullptr; }
    TypeImp* imp() const { return imp_; }

    /// The simple name, without dots.
    const nuo::string& name() const;
    /// The path from the root, such as ".sys.ref"; the simple name when no namespace owns the type.
    nuo::string fullName() const;

    /// The generic that this type is an instance of: the first one of the chain; null when none.
    Type model() const;
    const nuo::string& modelName() const;

    /// Bytes of a value; `kUnknown` until the layout is resolved.
    std::uint64_t payload() const;
    std::uint64_t alignment() const;
    /// True when values need no construction, destruction or element-wise copy.
    bool isPod() const;
    bool isMemberResolved() const { return payload() != kUnknown; }

    /// The owner; invalid until the type is adopted.
    Namespace parent() const;
    const TypeMethods& methods() const;

    /// Bases first, then members, in order of declaration. The reference holds as long as the type.
    const std::vector<TypeItem>& items() const;
    /// The same as a range.
    nuo::const_range<TypeItem> members() const;
    /// The first member of that name, null when there is none. Bases have no names.
    const TypeItem* member(nuo::string_ref name) const;

    nuo::const_range<TypeArg> args() const;
    /// The first argument of that name, null when there is none.
    const TypeArg* arg(nuo::string_ref name) const;
    std::uint64_t unresolvedArgs() const;

    /// Finds a type as one of this type's members would name it: an argument of this type, or an
    /// argument of that argument ("value_type.ref_type"), comes before the namespaces around it.
    /// A path with a leading dot goes to the namespaces at once. Invalid when nothing is found.
    Type locateType(nuo::string_ref path) const;

    friend bool operator==(Type left, Type right) { return left.imp_ == right.imp_; }
    friend bool operator!=(Type left, Type right) { return left.imp_ != right.imp_; }

private:
    TypeImp* imp_ = nullptr;
};

/// One base or member of a type.
class TypeItem {
public:
    enum Kind : std::uint32_t { kMember = 0, kBase = 1 };

    /// True when the item's type is known and laid out.
    bool valid() const { return type_.valid() && type_.isMemberResolved(); }

    /// Empty for a base.
    const nuo::string& name() const { return name_; }
    /// The path of the type as declared, kept so that it can be resolved late.
    const nuo::string& typeName() const { return typeName_; }
    Kind kind() const { return kind_; }
    Type type() const { return type_; }
    /// Byte offset inside the value, `kUnknown` while the layout is unresolved.
    std::uint64_t offset() const { return offset_; }
    /// The position in `Type::items()`.
    std::uint64_t index() const { return index_; }

private:
    friend class TypeBuilder;

    nuo::string name_;
    nuo::string typeName_;
    Kind kind_ = kMember;
    Type type_;
    std::uint64_t offset_ = kUnknown;
    std::uint64_t index_ = 0;
};

/// One argument of a generic type; its type is null while unbound.
class TypeArg {
public:
    const nuo::string& name() const { return name_; }
    const nuo::string& typeName() const { return typeName_; }
    Type type() const { return type_; }

private:
    friend class TypeBuilder;

    nuo::string name_;
    nuo::string typeName_;
    Type type_;
};

/// What a `Type` points to. Written by `TypeBuilder` alone.
struct TypeImp {
    std::vector<TypeItem> items;
    std::vector<TypeArg> args;
    nuo::string name;
    nuo::string modelName;
    Type model;
    std::uint64_t payload = kUnknown;
    std::uint64_t alignment = 0;
    std::uint64_t baseCount = 0;
    std::uint64_t unresolvedArgs = 0;
    bool pod = true;
    NamespaceImp* parent = nullptr;
    const TypeMethods* methods = nullptr;
};

inline const nuo::string& Type::name() const {
    return imp_->name;
}
inline const nuo::string& Type::modelName() const {
    return imp_->modelName;
}
inline Type Type::model() const {
    return imp_->model;
}
inline std::uint64_t Type::payload() const {
    return imp_->payload;
}
inline std::uint64_t Type::alignment() const {
    return imp_->alignment;
}
inline bool Type::isPod() const {
    return imp_->pod;
}
inline const TypeMethods& Type::methods() const {
    return *imp_->methods;
}
inline const std::vector<TypeItem>& Type::items() const {
    return imp_->items;
}
inline std::uint64_t Type::unresolvedArgs() const {
    return imp_->unresolvedArgs;
}

/// Handle of a second name for a type. Null is the invalid alias.
class TypeAlias {
public:
    TypeAlias() = default;
    explicit TypeAlias(TypeAliasImp* imp) : imp_(imp) {}

    bool valid() const { return imp_ != nullptr; }
    TypeAliasImp* imp() const { return imp_; }

    const nuo::string& name() const;
    /// The path of the target.
    const nuo::string& typeName() const;
    /// The target; may be invalid.
    Type type() const;
    Namespace parent() const;

    friend bool operator==(TypeAlias left, TypeAlias right) { return left.imp_ == right.imp_; }
    friend bool operator!=(TypeAlias left, TypeAlias right) { return left.imp_ != right.imp_; }

private:
    TypeAliasImp* imp_ = nullptr;
};

/// What a `TypeAlias` points to.
struct TypeAliasImp {
    nuo::string name;
    nuo::string typeName;
    Type type;
    NamespaceImp* parent = nullptr;
};

}  // namespace velmor
