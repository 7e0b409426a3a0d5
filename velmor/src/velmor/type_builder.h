#pragma once

#include <cstdint>
#include <memory>

#include "nuo/common/string.h"
#include "velmor/type.h"

namespace velmor {

/// Makes types. Calls chain, in the order
///
///     begin setName? setParent? setModel? setArg* addBase* addMember* endBuild adoptBy
///
/// which is the caller's duty and is not checked; only a base that comes after a member drops the
/// members. The builder owns the record in the making and can be used again after `adoptBy`.
///
/// A type whose layout cannot be finished is an ordinary type with an unknown payload; nothing is
/// raised for it here.
class TypeBuilder {
public:
    /// The last step that was taken.
    enum class Phase { kInitialized, kModel, kArgs, kBases, kMembers, kFinished };

    TypeBuilder();
    TypeBuilder(const TypeBuilder&) = delete;
    TypeBuilder& operator=(const TypeBuilder&) = delete;
    ~TypeBuilder();

    /// Drops any record in the making and starts a new one. Without `methods` the type is a record
    /// of its items. The methods are statics that outlive every type.
    TypeBuilder& begin(const TypeMethods* methods = nullptr);
    TypeBuilder& setName(nuo::string name);
    /// The namespace in which `endBuild` resolves names, and the target of `adoptBy()`.
    TypeBuilder& setParent(Namespace parent);
    /// Takes over items, arguments, layout and methods of `model`: the way to make an instance of
    /// a generic, followed by `setArg` for each open argument.
    TypeBuilder& setModel(Type model);
    /// Binds the argument of that name, or adds it. A null `type` leaves it open.
    TypeBuilder& setArg(nuo::string name, nuo::string typeName, Type type = Type());
    TypeBuilder& addBase(nuo::string typeName, Type type);
    TypeBuilder& addMember(nuo::string name, nuo::string typeName, Type type = Type());
    /// Resolves what was declared by path only, and lays the value out again if need be.
    TypeBuilder& endBuild();

    /// Hands the type to `parent`, which owns it from then on. The caller tests first that the name
    /// is free: where it is taken the old type stays, and the new one belongs to nobody.
    Type adoptBy(Namespace parent);
    /// The same with the parent that was set.
    Type adoptBy();

    /// The type in the making.
    Type get() const { return Type(imp_.get()); }
    Phase phase() const { return phase_; }

private:
    const TypeMethods& methods();
    void placeLast();
    void layOutAgain();

    std::unique_ptr<TypeImp> imp_;
    std::uint64_t offset_ = 0;
    Phase phase_ = Phase::kInitialized;
};

/// Makes aliases, one at a time.
class TypeAliasBuilder {
public:
    TypeAliasBuilder();
    TypeAliasBuilder(const TypeAliasBuilder&) = delete;
    TypeAliasBuilder& operator=(const TypeAliasBuilder&) = delete;
    ~TypeAliasBuilder();

    TypeAliasBuilder& begin();
    TypeAliasBuilder& setName(nuo::string name);
    TypeAliasBuilder& setTypeName(nuo::string path);
    TypeAliasBuilder& setType(Type type);

    /// Hands the alias to `parent`; a taken name is treated as by `TypeBuilder`.
    TypeAlias adoptBy(Namespace parent);

private:
    std::unique_ptr<TypeAliasImp> imp_;
};

}  // namespace velmor
