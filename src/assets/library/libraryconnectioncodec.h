#pragma once

#include "assets/library/generallibrary.h"
#include "assets/property/connectioncodec.h"

namespace korvanet::platform::assets {

// How a library tells the connections of its definitions, in force while the object lives. Reading
// one loads the definition that it means.
class LibraryConnectionCodec final : public IConnectionCodec {
public:
    explicit LibraryConnectionCodec(GeneralLibrary& library) : library_(library), scope_(*this) {}

    nuo::string Encode(const PropertyTableImp& table) override {
        return StoredConnection(library_.Identifier(), table.Name());
    }
    PropertyTableImp* Decode(nuo::string_ref text) override {
        HalvernAsset* const record =
            library_.LoadConnected(ConnectedName(library_.Identifier(), text));
        return record != nullptr ? record->table : nullptr;
    }

private:
    GeneralLibrary& library_;
    ConnectionCodecScope scope_;
};

}  // namespace korvanet::platform::assets
