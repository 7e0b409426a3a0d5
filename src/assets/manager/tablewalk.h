#pragma once

#include <vector>

#include "assets/property/modulecontext.h"
#include "velmor/namespace.h"

namespace korvanet::platform::assets {

class PropertyTableImp;

// The tables of a namespace and of all below it.
std::vector<PropertyTableImp*> TablesBelow(velmor::Namespace from, const ModuleContext& context);

// Destroys the tables of a namespace and of all below it, whoever still counts them. Their links to
// each other go first, so that the order in which they end does not matter.
void EndTables(velmor::Namespace from, const ModuleContext& context);

}  // namespace korvanet::platform::assets
