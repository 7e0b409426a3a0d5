#pragma once

#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>

namespace korvanet::platform::assets {

class IAssetInstance;
class IAssetSchema;

/// An asset as a library stores it. It is read-only: a host makes an instance to read its
/// properties and to change them. Texts that are keys of localized messages are given for a locale,
/// such as "ENG"; an empty locale, and a key without a message, give the key itself.
///
/// For every operation with an index: past the count it reports "Index is out of bound." and
/// returns false. A meta value that the asset does not have reads as empty, 0 or false.
class IAssetDefinition {
public:
    class IIterator;

    /// Gives back one reference. Definitions that a library stores stay with it; others go with
    /// their last reference.
    virtual void Release() = 0;

    /// The identifier, by which the library finds the definition.
    virtual bool GetName(IString& name) const = 0;

    /// The name for people, without trailing blanks.
    virtual bool GetUIName(IString& name, const IString& locale) const = 0;

    /// The asset type, one of those of `IAssetLibrary::GetAssetType` or one of a schema's own. The
    /// stored type "RPCGeometry" is given as "proceduralgeometry".
    virtual bool GetAssetType(IString& assetType) const = 0;

    virtual std::uint64_t GetKeywordCount() const = 0;
    virtual bool GetKeyword(std::uint64_t index, IString& keyword, const IString& locale) const = 0;

    virtual std::uint64_t GetCategoryCount() const = 0;
    virtual bool GetCategory(std::uint64_t index, IString& category,
                             const IString& locale) const = 0;

    /// 1, or 0 when the first stored thumbnail is empty: an asset shows at most one.
    virtual std::uint64_t GetThumbnailCount() const = 0;

    /// "thumbnail" for every valid index.
    virtual bool GetThumbnailName(std::uint64_t index, IString& name) const = 0;

    /// The URI of the picture.
    virtual bool GetThumbnail(std::uint64_t index, IString& uri) const = 0;

    virtual std::int32_t GetVersion() const = 0;
    virtual std::int32_t GetRevision() const = 0;

    virtual bool GetSwatch(IString& swatch) const = 0;

    /// Always 2: the plain and the advanced UI definition.
    virtual std::uint64_t GetUIDefinitionCount() const = 0;
    virtual bool GetUIDefinitionName(std::uint64_t index, IString& name) const = 0;
    virtual bool GetUIDefinition(std::uint64_t index, IString& uri) const = 0;

    /// The implementations that the asset has, of the seven known ones. Indices number those that
    /// are there.
    virtual std::uint64_t GetImplementationCount() const = 0;
    /// The name, such as "ImplementationGeneric".
    virtual bool GetImplementationIdentifier(std::uint64_t index, IString& identifier) const = 0;
    virtual bool GetImplementationUri(std::uint64_t index, IString& uri) const = 0;

    /// Without a description it reports "No desctiption property on this asset.", empties
    /// `description` and returns false.
    virtual bool GetDescription(IString& description, const IString& locale) const = 0;

    /// Should listings leave the asset out?
    virtual bool IsHidden() const = 0;

    /// The identifier of the library that the asset came from. False when it is empty.
    virtual bool GetAssetLibID(IString& identifier) const = 0;

    /// The schema of the asset; no reference to give back.
    virtual IAssetSchema* GetSchema() const = 0;

    /// A new instance with the definition's values, and one reference for the caller. Null on
    /// failure.
    virtual IAssetInstance* CreateInstance() = 0;

    /// One reference more, for the caller; returns the definition.
    virtual IAssetDefinition* AddReference() = 0;

    /// Is the schema of the asset, or one of its bases, the one of that name?
    virtual bool IsDerivedFromSchema(const IString& name) const = 0;

    virtual std::uint64_t GetReferenceCount() const = 0;

    /// The GUID of this state of the asset. When none is stored, a fresh one at every call.
    virtual bool GetVersionGUID(IString& guid) const = 0;

    virtual ~IAssetDefinition() = default;
};

/// A walk over definitions of a library that reads what a listing shows and makes no asset. It
/// answers as the definition would; at the end every getter gives false, 0 or an empty string. It
/// sees the definitions that were there when it was made, without those removed since, and does not
/// keep its library open: after the library is gone it is at the end.
class IAssetDefinition::IIterator {
public:
    /// True behind the last definition, and for an empty walk from the start.
    virtual bool IsAtEnd() const = 0;

    /// Moves to the next definition (to the one before). False when there is none; `Next` is then
    /// at the end, `Previous` stays where it was.
    virtual bool Next() = 0;
    virtual bool Previous() = 0;

    /// The definition at the position with one reference for the caller, or null.
    virtual IAssetDefinition* GetDefinition() = 0;

    virtual bool GetName(IString& name) const = 0;
    virtual bool GetUIName(IString& name, const IString& locale) const = 0;
    virtual std::uint64_t GetKeywordCount() const = 0;
    virtual bool GetKeyword(std::uint64_t index, IString& keyword, const IString& locale) const = 0;
    virtual std::uint64_t GetCategoryCount() const = 0;
    virtual bool GetCategory(std::uint64_t index, IString& category,
                             const IString& locale) const = 0;
    virtual std::uint64_t GetThumbnailCount() const = 0;
    virtual bool GetThumbnailName(std::uint64_t index, IString& name) const = 0;
    virtual bool GetThumbnail(std::uint64_t index, IString& uri) const = 0;
    virtual bool GetDescription(IString& description, const IString& locale) const = 0;
    virtual bool IsHidden() const = 0;

    /// The id of the definition's schema.
    virtual bool GetBaseSchema(IString& id) const = 0;

    virtual bool GetVersionGUID(IString& guid) const = 0;

    virtual ~IIterator() = default;

    /// Destroys the iterator; the way to end a walk.
    virtual void Release() = 0;
};

}  // namespace korvanet::platform::assets
