#pragma once

#include <cstddef>
#include <cstdint>

#include <korvanet/platform/assets/iassetdeserializer.h>
#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/iassetlibrary.h>
#include <korvanet/platform/assets/iassetschema.h>
#include <korvanet/platform/assets/iassetserializer.h>
#include <korvanet/platform/assets/ilocalization.h>
#include <korvanet/platform/assets/ipathresolver.h>
#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/idatastream.h>

namespace korvanet::platform::assets {

/// The front door: opens and creates libraries, holds the schemas that all of them share, and makes
/// serializers. There is one manager in a process (`GetIAssetLibraryManager`); it and all that is
/// reached through it are used by one thread at a time.
///
/// Paths are absolute, with "/" or "\". An operation that fails returns null or false, leaves the
/// strings of the caller unchanged, and tells its words to the report sink (`SetReportSink`). No
/// exception leaves an operation except where that is said.
class IAssetLibraryManager {
public:
    /// The identifier of the system library, which holds the generic material and the definitions
    /// that streams may refer to; and the identifier of the library of its physical materials.
    HALVERN_API static const wchar_t* const kSystemLibraryIdentifier;
    HALVERN_API static const wchar_t* const kSystemPhysicalLibraryIdentifier;

    /// Counts a client of the manager. Always true.
    virtual bool AddReference() = 0;

    /// Counts a client out. False while a library is open, and the count stays; false while the
    /// count is not zero. Else destroys the manager, with its scratch files, and is true: this
    /// object is gone, and the next `GetIAssetLibraryManager` makes a new one. Whoever still holds
    /// a schema, an instance or a definition that belongs to no library, a batch loader, or a
    /// choice list or one of its choices, holds something dead and must not even release it.
    virtual bool RemoveReference() = 0;

    /// Opens a library to read it, in place. A library that is open already is returned as it
    /// stands, with one claim more. Each claim is ended by `UnloadLibrary`. Null for a relative
    /// path (without a report), a file that is missing or is no library, and a second file with the
    /// identifier of a library that is open.
    virtual IAssetLibrary* OpenLibrary(const IString& path) = 0;

    /// Creates a library at a path where nothing is, in a folder that exists, and opens it to write
    /// it, in place, with one claim. It is on disk after `SaveLibrary`. An empty identifier, and
    /// the second form, take a fresh UUID. `options` is stored with the library; 8 selects the
    /// older layout, 0 is the ordinary one. Null with one of the reports "The given URI is
    /// relative, only absolute paths are accepted", "A library with this path already exists", "A
    /// file with this path already exists", "Folder/directory does not already exist",
    /// "Folder/directory is read-only"; without one for an identifier that an open library has or
    /// that cannot name a folder.
    virtual IAssetLibrary* CreateLibrary(const IString& path, const IString& identifier,
                                         unsigned options) = 0;
    virtual IAssetLibrary* CreateLibrary(const IString& path, unsigned options) = 0;

    /// Ends one claim on a library. The last one closes it, and what was not saved is lost; false,
    /// and the claim stays, while definitions or instances of the library are held. A library
    /// without a claim gives the warning "A lifetime management error occured while unloading the
    /// library document", and true. False for null.
    virtual bool UnloadLibrary(IAssetLibrary* library) = 0;

    /// The open library of that identifier, or null. No claim is added.
    virtual IAssetLibrary* FindLibrary(const IString& identifier) = 0;

    /// The open libraries, in order of opening. No claim is added. Past the end the report is
    /// "Index is out of scope." and the result null.
    virtual std::size_t GetLibraryCount() const = 0;
    virtual IAssetLibrary* GetLibraryAt(std::size_t index) = 0;

    /// Lets a library that is open for reading be written, and the other way round. On success the
    /// caller's pointer becomes null and the result is the one to use, with the same claims; on
    /// failure the result is null and `library` as it was. Writing is refused with "Cannot reopen a
    /// read-only asset library for writing.". What the layers below throw may leave these two; it
    /// derives from std::exception.
    virtual IAssetLibrary* ReopenForWriting(IAssetLibrary** library) = 0;
    virtual IAssetLibrary* ReopenForReading(IAssetLibrary** library) = 0;

    /// `OpenLibrary`, to write it. Refused with "Cannot open a read-only asset library for
    /// writing.". A library that is open for reading already is returned as it stands;
    /// `ReopenForWriting` it.
    virtual IAssetLibrary* OpenLibraryForWriting(const IString& path) = 0;

    /// Writes the changes of a library to its file; on a private copy also to the file that it is a
    /// copy of. False, when nothing may be written or writing fails. An exception for content that
    /// cannot be written (for instance a record whose schema is unknown) may leave it; it derives
    /// from std::exception.
    virtual bool SaveLibrary(IAssetLibrary* library) = 0;

    /// A new serializer, to be ended by its `Release`. `stream` is what `Serialize(nullptr)` writes
    /// to; it may be null, and must else be open and outlive the serializer. Null for a stream that
    /// is not open.
    virtual IAssetSerializer* CreateSerializer(core::IDataStream* stream) = 0;

    /// A new deserializer, to be ended by its `Release`.
    virtual IAssetDeSerializer* CreateDeSerializer() = 0;

    /// The folder that hosts keep derived files in; the library only remembers it.
    virtual void SetCacheFolder(const IString& path) = 0;

    /// The resolver of the process; it stays the manager's.
    virtual IPathResolver* GetPathResolver() = 0;

    /// The asset libraries that the registry tells of, in ascending order of their year. False past
    /// the end.
    virtual std::size_t GetRegisteredLibraryCount() const = 0;
    virtual bool GetRegisteredLibraryPath(std::size_t index, IString& path) const = 0;

    /// The folder that was set, or else one below the user's local data folder, which is made.
    /// False when it cannot be made.
    virtual bool GetCacheFolder(IString& path) = 0;

    /// 1 for the release of 2011, counting up. False past the end.
    virtual bool GetRegisteredLibraryVersion(std::size_t index, int& version) const = 0;

    /// The texture library that the registry tells of. False when there is none.
    virtual bool GetTextureLibraryPath(IString& path) const = 0;

    /// Is the texture library of a level, 0 to 2, installed?
    virtual bool IsTextureLibraryInstalled(int level) const = 0;

    /// Loads one schema file into the set that all libraries share. When its base is not there yet
    /// the result is a schema that stands outside of the set, without what it inherits, and that
    /// `FindSchema` does not know; it enters when its base does, unless another of its name has
    /// come before. Null when the file cannot be read as a schema with an id and, unless that is
    /// "CommonSchema", a base.
    virtual IAssetSchema* LoadSchemaFile(const IString& path) = 0;

    /// A new, empty schema of the shared set, or the one that has that name already. Without a
    /// parent it takes "CommonSchema", which must then be loaded. The two reserved arguments are
    /// ignored. Null for an empty name, and when `assetType` is not that of the parent.
    virtual IAssetSchema* CreateSchema(const IString& name, const IString* reserved1,
                                       const IString* reserved2, const IString& assetType,
                                       IAssetSchema* parent) = 0;

    /// The schemas of the shared set, in ascending order of their names; null past the end. They
    /// stay the manager's.
    virtual std::size_t GetSchemaCount() const = 0;
    virtual IAssetSchema* GetSchemaAt(std::size_t index) = 0;
    virtual IAssetSchema* FindSchema(const IString& name) = 0;

    /// A new instance with the defaults of a schema, and one reference for the caller. Its
    /// definition takes `identifier` (null or empty: a fresh one) and tells `libraryIdentifier` as
    /// the library that it came from (null: none). A schema of a library serves as well; the
    /// instance then has its defaults and belongs to the shared set's schema of that name, which
    /// `GetSchema` of the instance gives: what the library's schema has beyond that one is not
    /// stored in other libraries. Null on failure, and when the shared set has none of that name,
    /// as it has none of a batch that is not committed.
    virtual IAssetInstance* CreateInstanceFromSchema(IAssetSchema* schema,
                                                     const IString* identifier,
                                                     const IString* libraryIdentifier) = 0;

    /// Loads "<folder>/<name>.xml" and, from the same folder, the schemas that it is based on, into
    /// the shared set, and returns the schema that the shared set then has under that name: the one
    /// of the file or, where the shared set refuses that or the file's schema has another name, one
    /// that it had before, or null. A schema of another name enters the set under its own. Null too
    /// when one of the files is missing or cannot be read, or when the bases lead in a circle.
    virtual IAssetSchema* LoadSchemaFromFolder(const IString& name, const IString& folder) = 0;

    /// Makes `manager` a handle on the messages of the process, and returns it.
    virtual ILocalizationManager& GetLocalizationManager(ILocalizationManager& manager) = 0;

    /// Is the file a library of the older layout, which opening for writing would convert? False
    /// for a library of the present layout. What the layers below throw on a file that is none may
    /// leave it; it derives from std::exception.
    virtual bool IsLibraryUpgradeRequired(const IString& path) = 0;

    /// `OpenLibrary`, `OpenLibraryForWriting` and `CreateLibrary` on a private copy of the file,
    /// which leave it alone until a save copies it back. Those that write hold the lock file
    /// "<path>.lck" meanwhile; null, at once, when another process holds it.
    virtual IAssetLibrary* OpenLibraryCopy(const IString& path) = 0;
    virtual IAssetLibrary* OpenLibraryCopyForWriting(const IString& path) = 0;
    virtual IAssetLibrary* CreateLibraryCopy(const IString& path, const IString& identifier,
                                             unsigned options) = 0;

    virtual ~IAssetLibraryManager() = default;
};

/// The manager of the process, made by the first call. It goes with its last reference
/// (`RemoveReference`); nothing destroys it when the process ends. Null when it cannot be made, for
/// want of memory.
///
/// Scratch files lie in the folder "halvernrun" below the folder that the environment variable
/// "TMPDIR", or else "TMP", names. When neither is set that is the root of the file system, which
/// few may write to: a host sets one before the first call.
HALVERN_API IAssetLibraryManager* GetIAssetLibraryManager();

}  // namespace korvanet::platform::assets
