#pragma once

#include <cstdint>

namespace korvanet::platform::assets {

class HalvernAsset;
class PropertyTableImp;
struct ModuleContext;

// Which of the three tables a factory makes; the numbers are the `kind` of the made table.
enum class TableKind : std::uint32_t { kSchema = 0, kDefinition = 1, kInstance = 2 };

// Makes the tables whose classes live in the strata above, so that the clone of a table can be an
// asset instance. The manager supplies it.
class ITableFactory {
public:
    // Makes an empty table of the given kind and puts it in `holder`, which owns it from then on;
    // its count is zero. Never null.
    virtual PropertyTableImp* MakeTable(TableKind kind, HalvernAsset& holder,
                                        const ModuleContext& context) = 0;

protected:
    ~ITableFactory() = default;
};

}  // namespace korvanet::platform::assets
