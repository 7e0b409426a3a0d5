#pragma once

#include "session.h"
#include "story.h"

namespace demo {

/// The name under which the edited tile is stored.
inline constexpr const char* kEditedTile = "large-tile";

/// Changes an instance of the tile: values, a connection, a name. Tells what an observer heard, and
/// what was refused.
Lines EditTile(Session& session, IAssetLibrary& library, IAssetInstance& tile);

/// Stores the edited tile as a definition of its own.
Lines StoreTile(Session& session, IAssetLibrary& library, IAssetInstance& tile);

}  // namespace demo
