#pragma once

#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>

namespace korvanet::platform::assets {

class IAssetDefinition;
class IAssetObserver;
class IAssetSchema;

/// An asset as a host edits it: a table of properties with values of its own, made from a
/// definition (`IAssetDefinition::CreateInstance`), a schema or another instance. Read-only
/// properties are shared with the definition and must not be set through an instance. A library
/// refuses to unload while instances of it are held.
///
/// For every operation with an index: past the count it reports "Index is out of bound." and
/// returns false. The getters of meta values answer as those of `IAssetDefinition` do. A setter
/// whose property the asset does not have returns false. Setters take texts as they are; a text
/// that is the key of a localized message reads back as that message.
class IAssetInstance : public IPropertyTable {
public:
    /// Gives back one reference; the instance goes with its last.
    virtual void Release() = 0;

    /// Does nothing, like `EndChange` and `CancelChange`; changes hold at once.
    virtual void BeginChange() = 0;

    /// Is `revision` that of the asset?
    virtual bool IsRevision(std::int32_t revision) const = 0;

    virtual void EndChange() = 0;
    virtual void CancelChange() = 0;

    /// Lets `observer` hear of changes from now on. It stays the caller's and must be removed
    /// before it goes. A second time for the same reports "Observer already exists." and is false.
    virtual bool AddObserver(IAssetObserver* observer) = 0;

    /// False, with the report "Observer does not exist.", when it is not among the observers.
    virtual bool RemoveObserver(IAssetObserver* observer) = 0;

    virtual bool GetUIName(IString& name, const IString& locale) const = 0;
    /// An empty name reports "Can't set UI Name, the Name's empty" and is false.
    virtual bool SetUIName(const IString& name) = 0;

    virtual std::uint64_t GetThumbnailCount() const = 0;
    virtual bool GetThumbnailName(std::uint64_t index, IString& name) const = 0;
    virtual bool GetThumbnail(std::uint64_t index, IString& uri) const = 0;
    virtual bool RemoveThumbnail(std::uint64_t index) = 0;
    /// `name` must be "thumbnail". Replaces the first thumbnail, or adds it.
    virtual bool SetThumbnail(const IString& name, const IString& uri) = 0;

    virtual std::uint64_t GetKeywordCount() const = 0;
    virtual bool GetKeyword(std::uint64_t index, IString& keyword, const IString& locale) const = 0;
    virtual bool RemoveKeyword(std::uint64_t index) = 0;
    /// An empty one reports "Can't add localized keyword, the keword is empty." and is false.
    virtual bool AddKeyword(const IString& keyword) = 0;

    virtual std::uint64_t GetCategoryCount() const = 0;
    virtual bool GetCategory(std::uint64_t index, IString& category,
                             const IString& locale) const = 0;
    virtual bool RemoveCategory(std::uint64_t index) = 0;
    /// An empty one reports "Can't add localized category, the category is empty." and is false.
    virtual bool AddCategory(const IString& category) = 0;

    virtual bool GetDescription(IString& description, const IString& locale) const = 0;
    virtual bool SetDescription(const IString& description) = 0;

    /// The definition that the instance came from, with one reference for the caller, or null.
    virtual IAssetDefinition* GetDefinition() = 0;

    /// One reference more, for the caller; returns the instance.
    virtual IAssetInstance* AddReference() = 0;

    /// A new instance with the values that this one has now, an identifier of its own, the same
    /// definition, and clones of the connected assets; one reference for the caller. Null on
    /// failure.
    virtual IAssetInstance* Clone() = 0;

    /// Compares the values of two instances of one schema. "VersionGUID", "AssetLibID",
    /// "thumbnail", "BaseSchema", "version" and "revision" do not count. With `deep` the connected
    /// assets must be equal too, matched by asset type; with `publicOnly` only public properties
    /// count. With `byVersionOnly` the answer is whether the texts of `GetVersionGUID` are equal,
    /// nothing else.
    virtual bool IsEqual(const IAssetInstance* other, bool deep, bool publicOnly,
                         bool byVersionOnly) const = 0;

    virtual bool GetSwatch(IString& swatch) const = 0;
    virtual bool SetSwatch(const IString& swatch) = 0;

    /// A new instance of the system library's generic material that looks like this one, with one
    /// reference for the caller. Null when the system library is not open or no binding tells how.
    virtual IAssetInstance* CreateGenericInstance() = 0;

    /// Reads from the file of the implementation `identifier` what its shader bindings describe.
    /// False when the asset has no such implementation, its file is not found, or it tells nothing.
    virtual bool GetImplementationBinding(const IString& identifier, IString& value,
                                          IString& tag) const = 0;

    /// The schema of the asset; no reference to give back.
    virtual IAssetSchema* GetSchema() const = 0;

    virtual std::uint64_t GetUIDefinitionCount() const = 0;
    virtual bool GetUIDefinitionName(std::uint64_t index, IString& name) const = 0;
    virtual bool GetUIDefinition(std::uint64_t index, IString& uri) const = 0;
    virtual std::uint64_t GetImplementationCount() const = 0;
    virtual bool GetImplementationIdentifier(std::uint64_t index, IString& identifier) const = 0;
    virtual bool GetImplementationUri(std::uint64_t index, IString& uri) const = 0;

    virtual bool IsDerivedFromSchema(const IString& name) const = 0;
    virtual std::uint64_t GetReferenceCount() const = 0;
    virtual bool GetVersionGUID(IString& guid) const = 0;

    /// Marks the state of the asset. An empty text is false.
    virtual bool SetVersionGUID(const IString& guid) = 0;
    /// The same with a fresh GUID.
    virtual bool RenewVersionGUID() = 0;
};

}  // namespace korvanet::platform::assets
