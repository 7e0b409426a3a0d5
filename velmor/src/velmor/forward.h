#pragma once

#include <cstdint>

/// The classes of the reflective runtime, by name only: types, namespaces and objects refer to
/// each other, so their headers meet here.
///
/// Terms used throughout:
///  - A *handle* (`Type`, `Namespace`, `TypeAlias`) is one pointer to a record, copied freely. It
///    owns nothing and does not keep the record alive. Calling anything but `valid()` and the
///    comparisons on a null handle is an error of the caller that nobody checks.
///  - A *record* (`TypeImp`, `NamespaceImp`, `TypeAliasImp`) belongs to its builder until
///    `adoptBy` hands it to a namespace.
///  - Nothing here is safe to use from two threads at once.
namespace velmor {

struct TypeImp;
struct TypeAliasImp;
struct NamespaceImp;
struct ExtendMethods;

class Array;
class Namespace;
class NamespaceBuilder;
class Runtime;
class Type;
class TypeAlias;
class TypeAliasBuilder;
class TypeArg;
class TypeBuilder;
class TypeInfoHandle;
class TypeItem;
class TypeMethods;

template <class Data>
class ObjectT;
template <class Data>
class SubObjectT;

/// A value: its type and its bytes.
using Object = ObjectT<void>;
/// A value that is only read.
using ConstObject = ObjectT<const void>;
/// A base or member of a value.
using SubObject = SubObjectT<void>;
using ConstSubObject = SubObjectT<const void>;

/// A size, offset or index that is not known (yet).
inline constexpr std::uint64_t kUnknown = ~std::uint64_t{0};

}  // namespace velmor
