#pragma once

#include "session.h"
#include "story.h"

namespace demo {

/// One line for each definition that a library shows, with its texts in a locale; what is hidden is
/// counted in the last.
Lines List(IAssetLibrary& library, const char* locale);

}  // namespace demo
