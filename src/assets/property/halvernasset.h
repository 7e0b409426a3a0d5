#pragma once

#include <cstdint>

#include "nuo/common/string.h"
#include "velmor/namespace.h"
#include "velmor/type_methods.h"

namespace korvanet::platform::assets {

class PropertyTableImp;

// The reflected value that stands for one asset or schema in a namespace: it owns the table, and
// carries what a library notes about its record of the asset. Destroying the value destroys the
// table.
//
// The table is the first word, so that whoever holds only the bytes can reach it.
class HalvernAsset {
public:
    static constexpr std::uint32_t kChanged = 1;
    // The number of a block that does not exist.
    static constexpr std::uint32_t kNoBlock = 0xFFFFFFFF;

    HalvernAsset() = default;
    HalvernAsset(const HalvernAsset&) = delete;
    HalvernAsset& operator=(const HalvernAsset&) = delete;
    ~HalvernAsset();

    PropertyTableImp* table = nullptr;
    nuo::string identifier;
    velmor::Namespace registry;
    nuo::string baseSchema;
    std::uint32_t definitionBlock = kNoBlock;
    std::uint32_t instanceBlock = kNoBlock;
    // kChanged, or 0.
    std::uint32_t state = 0;
    bool definitionLoaded = false;
    bool instanceLoaded = false;
};

// By identifier, then by base schema, then by the groups of the tables as far as they are loaded; a
// record without a table sorts before one with any.
int compareNative(const HalvernAsset& left, const HalvernAsset& right);

// The methods of the reflected type `HalvernAsset`. A record is stored by its library, not here.
const velmor::TypeMethods& HalvernAssetMethods();

}  // namespace korvanet::platform::assets
