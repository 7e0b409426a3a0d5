#pragma once

#include <map>
#include <vector>

#include "assets/property/halverntypes.h"
#include "nuo/common/string.h"

namespace nuo {
class heap;
}
namespace velmor {
class Runtime;
}

namespace korvanet::platform::assets {

class ILocalizationManagerImp;
class ITableFactory;
class ITextureRoots;

// What every property, table and schema needs of the process: one per manager, which fills it at
// start and outlives all that points to it. Nothing here is owned.
//
// `localization`, `tables` and `textures` may be null: texts are then not localized, tables cannot
// be made, and there is no texture library.
struct ModuleContext {
    velmor::Runtime* runtime = nullptr;
    // The runtime's heap, where all objects come from.
    nuo::heap* heap = nullptr;
    HalvernTypes types;
    ILocalizationManagerImp* localization = nullptr;
    ITableFactory* tables = nullptr;
    ITextureRoots* textures = nullptr;

    // The resolution variants that were asked for so far, by the name of the image.
    mutable std::map<nuo::string, std::vector<nuo::string>, nuo::string_less> textureVariants;
};

// The message for `key` in `locale`, from any registered domain, or else `fallback`.
nuo::string Localize(const ModuleContext* context, nuo::string_ref key, nuo::string_ref locale,
                     const nuo::string& fallback);

}  // namespace korvanet::platform::assets
