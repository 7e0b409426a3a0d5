#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/core/idatareadstream.h>

namespace korvanet::platform::assets {

/// An open library. It belongs to the manager; a host holds a counted claim on it that
/// `IAssetLibraryManager::UnloadLibrary` ends.
///
/// An operation that changes the library is refused, with the report named with it, while
/// `IsReadOnly`. Changes are in memory until `IAssetLibraryManager::SaveLibrary`. Iterators are the
/// caller's, ended by their `Release`; they are never null, but may be empty.
class IAssetLibrary {
public:
    /// The text that names the library, the same for every copy of its file.
    virtual void GetIdentifier(IString& identifier) const = 0;

    /// All definitions, hidden ones too, in ascending order of their identifiers.
    virtual IAssetDefinition::IIterator* GetDefinitions() = 0;

    /// The definition with the identifier `text`.
    virtual IAssetDefinition::IIterator* GetDefinitionsById(const IString& text) = 0;

    /// The seven asset types that the library knows by name; no matter which of them it holds. Past
    /// the last `GetAssetType` reports "Index is out of scope." and is false.
    virtual std::size_t GetAssetTypeCount() const = 0;
    virtual bool GetAssetType(std::size_t index, IString& name) const = 0;

    /// Gives back one reference on an instance that was made in this library. False for others.
    virtual bool DeleteInstance(IAssetInstance* instance) = 0;

    /// Store a definition, of this library or of another, as a new one, with its values, schema and
    /// connected assets. False, and nothing stored, for a library that is read-only ("Cannot create
    /// new preset to read-only AssetLibrary.").
    ///
    /// Under `identifier`, with a version and a revision. A taken identifier is updated in place.
    /// An empty one is refused ("New preset identifier shouldn't be NULL."), and so are zeros
    /// ("Cannot create a new asset preset of which version or revision number is 0.").
    virtual bool CreatePreset(IAssetDefinition* definition, const IString& identifier,
                              std::uint32_t version, std::uint32_t revision) = 0;
    /// Under `identifier`, shown in listings or not. An empty identifier is refused as above, a
    /// taken one without a report.
    virtual bool CreatePreset(IAssetDefinition* definition, const IString& identifier,
                              bool hidden) = 0;
    /// Under the identifier of the source, with a new revision.
    virtual bool CreatePreset(IAssetDefinition* definition, std::uint32_t revision) = 0;

    /// Removes a definition of this library and, on success, gives back one reference of the
    /// caller: the definition goes with its last reference, so add one before to go on with it.
    /// Refused with "Cannot remove preset from a read-only AssetLibrary.", and for a definition of
    /// another library with "The Preset doesn't belong to this library.".
    virtual bool RemovePreset(IAssetDefinition* definition) = 0;

    /// These do nothing and give null or false; they keep their places in the order of the
    /// operations.
    virtual void* Reserved1() = 0;
    virtual bool Reserved2() = 0;
    virtual bool Reserved3() = 0;
    virtual bool Reserved4() = 0;
    virtual bool Reserved5() = 0;
    virtual bool Reserved6() = 0;
    virtual bool Reserved7() = 0;

    /// A new instance of a definition of this library, with one reference for the caller. Null,
    /// with the report "Cannot instantiate an AssetDefinition from another Library.", for others.
    virtual IAssetInstance* CreateInstance(IAssetDefinition* definition) = 0;

    /// True when the file may not be written, or when the library was marked by `SetReadOnly`.
    /// Being open for reading is not meant.
    virtual bool IsReadOnly() const = 0;

    /// Marks the library as read-only for good. The mark is stored by the next save, which is the
    /// last that succeeds.
    virtual void SetReadOnly() = 0;

    /// A number of the author's own.
    virtual std::uint32_t GetVersion() const = 0;

    /// Refused with "Cannot set version on read-only library", and for 0 with "Cannot set version
    /// number to 0.".
    virtual bool SetVersion(std::uint32_t version) = 0;

    /// The definitions of the asset type of a schema, or of the schema of a definition or an
    /// instance. Null gives an empty walk.
    virtual IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetSchema* schema) = 0;
    virtual IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetDefinition* definition) = 0;
    virtual IAssetDefinition::IIterator* GetDefinitionsOfType(IAssetInstance* instance) = 0;

    /// Copies a definition, of this library or of another, into this one, under `identifier` or,
    /// when that is null or empty, under its own. Refused with "Cannot copy AssetDefinition to
    /// read-only AssetLibrary."; false also for a definition without a schema or without an asset
    /// type.
    virtual bool CopyDefinition(IAssetDefinition* definition, const IString* identifier) = 0;

    /// The definitions whose asset type, or whose schema's id, is `type`.
    virtual IAssetDefinition::IIterator* GetDefinitionsOfType(const IString& type) = 0;

    /// Stores the file at the path `file` in the library and gives its path there, with "\" as
    /// separator; `OpenResource` takes it behind "jpk:?asset=/". The same file twice, with an empty
    /// `type`, gives the same path. `keepName` is not used.
    virtual bool AddResource(IString& uri, const IString& type, const IString& file,
                             bool keepName) = 0;

    /// Stores the file at the path `file` under the resource `name`, a URI or a path of this
    /// library's resources or a mere file name, instead of what stood there, and opens it. With an
    /// empty `file` the same as `OpenResource`.
    virtual bool ReplaceResource(std::shared_ptr<core::IDataReadStream>& stream,
                                 const IString& name, const IString& file) = 0;

    /// Opens what `uri` names: a resource of this library when it begins with "jpk:?asset=/", else
    /// an ordinary file. False, and `stream` null, when there is none. The stream outlives the
    /// library.
    virtual bool OpenResource(std::shared_ptr<core::IDataReadStream>& stream,
                              const IString& uri) = 0;

    /// One claim more on the library, to be ended by `IAssetLibraryManager::UnloadLibrary`.
    virtual IAssetLibrary* AddUse() = 0;

    /// Does nothing; it keeps its place in the order of the operations.
    virtual void Reserved8() = 0;

    /// Loads the library's file anew into the private copy that this library works on; what was not
    /// saved is lost. Definitions and instances that are held stay valid, but leave the library.
    /// False, and nothing changed, when the library is not on a copy or the file cannot be read.
    /// Shared assets are indexed anew; when a definition of the file cannot be read they are off.
    virtual bool TakeWriteAccessOnCopy() = 0;

    /// Does the library work on a private copy of its file?
    virtual bool IsOnCopy() const = 0;

    /// Switches the index of shared assets on, under a tag, or off. Shared assets are the
    /// definitions of the types "physicalmaterial" and "texture". A tag that is not the one before,
    /// which is empty at first, builds the index from the definitions; the same tag keeps the index
    /// as it is. False when that fails; the mode is then off.
    virtual bool EnableSharedAsset(bool enable, const IString& tag) = 0;

    /// Enter a definition's identifier in the index under an asset type and a name, or take it out.
    /// Refused in this order: "Cannot edit a read-only AssetLibrary.", "Please call
    /// EnableSharedAsset API first.", and for an empty name of `AddSharedAsset` "Empty Name is Not
    /// Allowed.". The index is not stored.
    virtual bool AddSharedAsset(const IString& type, const IString& name,
                                const IString& identifier) = 0;
    virtual bool RemoveSharedAsset(const IString& type, const IString& name) = 0;
    /// The same with the type, the name and the identifier of a definition.
    virtual bool ShareDefinition(IAssetDefinition* definition) = 0;
    virtual bool UnshareDefinition(IAssetDefinition* definition) = 0;

    /// The shared assets entered under a type and a name, or under all names of a type.
    virtual IAssetDefinition::IIterator* GetSharedDefinitionsByName(const IString& type,
                                                                    const IString& name) = 0;
    virtual IAssetDefinition::IIterator* GetSharedDefinitions(const IString& type) = 0;
    /// The same by the UI names that the definitions carry.
    virtual IAssetDefinition::IIterator* GetSharedDefinitionsByType(const IString& type,
                                                                    const IString& name) = 0;
    virtual IAssetDefinition::IIterator* GetSharedDefinitionsOfType(const IString& type) = 0;

    virtual ~IAssetLibrary() = default;

    /// Stores an instance with the values and connected assets that it has now; this is how an
    /// edited asset is kept. Identifier, visibility and refusals as in the second form of
    /// `CreatePreset`.
    virtual bool CreatePresetFromInstance(IAssetInstance* instance, const IString& identifier,
                                          bool hidden) = 0;

    /// Brings a schema and its bases into the library, so that a stored file can be read without
    /// them. True also when they are there already. Refused with "Cannot edit a read-only
    /// AssetLibrary.".
    virtual bool AddSchema(IAssetSchema* schema) = 0;
};

}  // namespace korvanet::platform::assets
