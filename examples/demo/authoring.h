#pragma once

#include <filesystem>

#include "session.h"
#include "story.h"

namespace demo {

/// Loads the schemas of the content into the set that all libraries share, and tells of each.
Lines LoadSchemas(Session& session, const std::filesystem::path& content);

/// Brings these schemas into a library; their bases come with them.
Lines BringSchemasIn(Session& session, IAssetLibrary& library);

/// Stores the starter definitions, with the textures that they show and the assets that they are
/// connected to.
Lines AddDefinitions(Session& session, IAssetLibrary& library,
                     const std::filesystem::path& content);

}  // namespace demo
