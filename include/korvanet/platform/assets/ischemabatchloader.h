#pragma once

#include <korvanet/platform/assets/iassetschema.h>
#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/idatareader.h>

namespace korvanet::platform::assets {

/// Loads schemas that depend on each other in any order, and gives them to the manager together.
/// The order of calls: `LoadSchema` for each file, `Commit`, `Release`.
class ISchemaBatchLoader {
public:
    /// A new loader, to be ended by `Release` before the manager is. Makes the manager when there
    /// is none.
    HALVERN_API static ISchemaBatchLoader* Create();

    /// Reads one schema file from the reader, from its start to its end and not from its position,
    /// where `IAssetSchema::WriteTo` writes; so it must hold nothing else. The reader must be open
    /// and stays the caller's. Returns the schema, which belongs to the loader and may still lack
    /// what it inherits from a base that was not loaded yet. An id that the loader has already
    /// gives the schema loaded first and the warning "Try to load a loaded schema.". Null when the
    /// file is malformed, tells no id ("UID") or, unless that is "CommonSchema", no base, has more
    /// than 4 MiB, 16,384 elements or 1,048,576 elements of lists, or when the schemas of the
    /// loader would inherit more than 262,144 properties together; the batch may go on. Null after
    /// a `Commit` that was true.
    virtual IAssetSchema* LoadSchema(core::IDataReader* stream) = 0;

    /// Gives the schemas to the manager, merged with those of the same id. False when the base of a
    /// schema is missing, then none is given; or when one does not fit the manager's of its id,
    /// then those before it stay. After true the loader is spent: its schemas are gone, those of
    /// the manager take their place, and a further call is true and does nothing.
    virtual bool Commit() = 0;

    /// Destroys the loader with what it has not committed.
    virtual void Release() = 0;

    virtual ~ISchemaBatchLoader() = default;
};

}  // namespace korvanet::platform::assets
