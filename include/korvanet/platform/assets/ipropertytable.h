#pragma once

#include <cstdint>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/ienumeration.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::assets {

using core::IEnumeration;
using core::IString;

class IAssetInstance;
class IValue;

/// The kind of a property's value, and with it the interface of `ivalue.h` that serves it.
enum class PropertyType : std::uint32_t {
    kUnspecified = 0,  ///< IUnSpecifiedValue
    kBinary = 1,       ///< IBinaryValue
    kString = 2,       ///< IStringValue
    kDateTime = 3,     ///< IDateTimeValue
    kUri = 4,          ///< IUriValue, or ITextureURIValue
    kBoolean = 5,      ///< IBooleanValue
    kInteger = 6,      ///< IIntegerValue
    kScalar = 7,       ///< IScalarValue
    kColor = 8,        ///< IColorValue
    kTexture = 9,      ///< ITextureValue
    kChoice = 10,      ///< IChoiceListValue
    kUuid = 11,        ///< IUuidValue
    kReference = 12,   ///< IReferenceValue
};

/// The bits of a property's flag word. They come from the schema and are the same for all assets
/// that are made from it.
namespace PropertyFlags {

/// Seen by enumerations of public properties; its changes reach the observers of an instance.
inline constexpr std::uint32_t kPublic = 0x1;
/// Stored once and shared by a schema, its definitions and their instances.
inline constexpr std::uint32_t kReadOnly = 0x2;
/// The value is a list.
inline constexpr std::uint32_t kAllowMultipleValues = 0x4;
/// Belongs to what a listing of definitions shows.
inline constexpr std::uint32_t kDefinitionIteratorData = 0x8;
/// Strings are keys of localized messages.
inline constexpr std::uint32_t kLocal = 0x10;
/// Takes one connected asset.
inline constexpr std::uint32_t kAllowConnectedAsset = 0x20;
/// Takes several connected assets, at most one of each asset type.
inline constexpr std::uint32_t kAllowConnectedAssets = 0x40;
/// Names a UI definition.
inline constexpr std::uint32_t kUIDefinition = 0x80;
/// Names an implementation.
inline constexpr std::uint32_t kImplementation = 0x100;
/// Names a texture, possibly in several resolutions.
inline constexpr std::uint32_t kTextureURI = 0x200;
/// The value carries a unit.
inline constexpr std::uint32_t kUnits = 0x400;
/// Metadata.
inline constexpr std::uint32_t kMetadata = 0x800;

/// May the property hold connected assets at all?
inline constexpr std::uint32_t kConnectionMask = kAllowConnectedAsset | kAllowConnectedAssets;

}  // namespace PropertyFlags

/// A table of typed properties: the face of a schema and of an asset instance. Properties belong to
/// their table and live as long as it does, with one exception: loading, committing and saving may
/// replace properties of schemas, and with them the read-only ones of the assets of these, which
/// are the schemas' own. Look them up again after that.
class IPropertyTable {
public:
    /// One typed property. Text that comes out goes to a string of the caller; text that goes in is
    /// wide and NUL-terminated, and a null pointer in its place makes the operation false.
    class IProperty {
    public:
        class IBounds;
        class IChoice;
        class IChoiceList;

        /// The name that the property has in its table.
        virtual void GetName(IString& name) const = 0;

        virtual PropertyType GetType() const = 0;

        /// An or of `PropertyFlags`.
        virtual std::uint32_t GetFlags() const = 0;

        /// The value, never null. It belongs to the property. `dynamic_cast` it to the interface
        /// that `GetType` tells.
        virtual IValue* GetValue() = 0;
        virtual const IValue* GetValue() const = 0;

        /// A mark of the caller's own; true at first. It counts in comparisons.
        virtual bool IsMarked() const = 0;
        /// Always true.
        virtual bool SetMarked(bool marked) = 0;

        /// Assets that are connected to the property.
        virtual std::uint64_t GetConnectedAssetCount() const = 0;

        /// Connects `asset`, which the property then holds a reference on. A property that takes
        /// one connection drops the one it had; a property that takes several drops the one whose
        /// asset has the same asset type. Null disconnects all. False when the property takes no
        /// connections, and with the report "Cannot set a instance to its own property." when it
        /// belongs to `asset` itself; one that takes one connection has then lost it all the same.
        virtual bool ConnectAsset(IAssetInstance* asset) = 0;

        /// The first connected asset of the asset type `assetType`, or the one at `index`, counted
        /// from 0. Null when there is none, or when it is a definition of the library, as what is
        /// connected to a property with "definitionIteratorData" stays one in instances. The
        /// caller gets no reference: the result lives as long as the connection, unless the caller
        /// adds one.
        virtual IAssetInstance* GetConnectedAsset(const wchar_t* assetType) const = 0;
        virtual IAssetInstance* GetConnectedAsset(std::uint64_t index) const = 0;

        /// Disconnects the first connected asset of the asset type `assetType`, or `asset`. False
        /// when it is not connected.
        virtual bool RemoveConnectedAsset(const wchar_t* assetType) = 0;
        virtual bool RemoveConnectedAsset(IAssetInstance* asset) = 0;

        /// Are the marks and the values equal? False for null. Connected assets and flags do not
        /// count, nor do names, but for choices: see `IValue::IsEqual`.
        virtual bool IsEqual(const IProperty* other) const = 0;

        /// The label for `locale`: the message of the key "<name>:uilabel", or the schema's own
        /// label when there is none. True when it was written.
        virtual bool GetLocalizedLabel(IString& label, const wchar_t* locale) const = 0;

        virtual ~IProperty() = default;

        /// `IsEqual` for a property that is there.
        virtual bool IsEqualTo(const IProperty& other) const = 0;
    };

    /// Walks the properties in ascending order of their names, compared as signed bytes; with
    /// `publicOnly` only those whose flags have `PropertyFlags::kPublic`. Each result goes back by
    /// `ReleaseEnumeration`, before the table does. No property may be added meanwhile.
    virtual IEnumeration<const IProperty*>* GetProperties(bool publicOnly) const = 0;
    virtual IEnumeration<IProperty*>* GetProperties(bool publicOnly) = 0;

    /// Ends a walk. Null is accepted.
    virtual void ReleaseEnumeration(IEnumeration<const IProperty*>* enumeration) const = 0;
    virtual void ReleaseEnumeration(IEnumeration<IProperty*>* enumeration) = 0;

    /// The property of that name, or of the name that the schema gives for it as an alias. Null,
    /// and no report, when there is none.
    virtual const IProperty* FindProperty(const wchar_t* name) const = 0;
    virtual IProperty* FindProperty(const wchar_t* name) = 0;

    virtual ~IPropertyTable() = default;
};

/// The limits of a number. What `Create` returns has a count of zero: it belongs to the caller
/// until it is given to a property, which then keeps it alive; only one that was never given away
/// may be deleted.
class IPropertyTable::IProperty::IBounds {
public:
    /// With `isPercentage` the other arguments do not count: the limits are 0.0 and 1.0, both
    /// inclusive, and the increment is 1.0.
    HALVERN_API static IBounds* Create(bool hasMinimum, double minimum, bool minimumIsInclusive,
                                       bool hasMaximum, double maximum, bool maximumIsInclusive,
                                       double incrementSize, bool isPercentage);

    virtual bool HasMinimum() const = 0;
    virtual double GetMinimum() const = 0;
    virtual bool MinimumIsInclusive() const = 0;
    virtual bool HasMaximum() const = 0;
    virtual double GetMaximum() const = 0;
    virtual bool MaximumIsInclusive() const = 0;

    /// The step that a user interface should offer; it limits nothing.
    virtual double GetIncrementSize() const = 0;

    virtual bool IsPercentage() const = 0;

    /// Does `value` satisfy the limits that are there?
    virtual bool IsInBounds(double value) const = 0;

    virtual ~IBounds() = default;
};

/// One entry of a choice list: an id for files, a value for programs and a label for people.
/// Ownership is that of `IBounds`, with the list in place of the property.
class IPropertyTable::IProperty::IChoice {
public:
    HALVERN_API static IChoice* Create(const IString& label, std::int32_t value, const IString& id);

    virtual void GetId(IString& id) const = 0;
    virtual std::int32_t GetValue() const = 0;

    /// The label for `locale`: the message of the key "<name of the list>:<id>", or the label given
    /// at creation when there is none.
    virtual void GetLabel(IString& label, const wchar_t* locale) const = 0;

    virtual ~IChoice() = default;

    /// Are id, value and label equal? False for null.
    virtual bool IsEqual(const IChoice* other) const = 0;
};

/// The entries that a choice property selects from. Ownership is that of `IBounds`.
class IPropertyTable::IProperty::IChoiceList {
public:
    HALVERN_API static IChoiceList* Create();

    virtual std::uint64_t GetCount() const = 0;

    /// The entry at `index`, in order of adding; it stays the list's. Past the end the report is
    /// "Invalid index" and the result null.
    virtual IChoice* GetChoice(std::uint64_t index) const = 0;

    /// Appends `choice`, which the list then keeps alive. False, and `choice` stays the caller's,
    /// when it is null or when an entry has its id or its value.
    virtual bool AddChoice(IChoice* choice) = 0;

    virtual ~IChoiceList() = default;

    /// Are the names equal, and each entry of this list to the other's at its index? False for null
    /// and for a list that is shorter; entries behind this list's do not count.
    virtual bool IsEqual(const IChoiceList* other) const = 0;
};

using IProperty = IPropertyTable::IProperty;
using IBounds = IPropertyTable::IProperty::IBounds;
using IChoice = IPropertyTable::IProperty::IChoice;
using IChoiceList = IPropertyTable::IProperty::IChoiceList;

}  // namespace korvanet::platform::assets
