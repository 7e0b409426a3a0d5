#pragma once

#include <map>
#include <vector>

#include "assets/library/generallibrary.h"

namespace korvanet::platform::assets {

// Stores a table of any origin, with what is connected to it, as records of a library. A connected
// asset that is a record of this library already is linked; any other becomes a hidden record under
// a fresh identifier, each once.
class AssetCopier {
public:
    // `fresh` takes the identifiers of the records that are made.
    AssetCopier(GeneralLibrary& target, std::vector<nuo::string>& fresh)
        : target_(target), fresh_(fresh) {}

    // The record of `identifier`, made or filled anew; null, and no record stored, when a schema
    // cannot be taken over. Raises JpkFsErr, and nothing is stored, when the connections reach too
    // deep.
    PropertyTableImp* Copy(PropertyTableImp& source, nuo::string_ref identifier);

private:
    bool EnsureSchemas();
    void Gather(PropertyTableImp& source);
    PropertyTableImp& MakeRecord(PropertyTableImp& source, nuo::string_ref identifier);
    void Fill(const PropertyTableImp& source, PropertyTableImp& made);
    void FillProperty(const PropertyBase& source, PropertyBase& made);
    void Relink(PropertyTableImp& table);
    void RelinkProperty(PropertyBase& property);
    PropertyTableImp* Counterpart(PropertyTableImp& connected) const;

    GeneralLibrary& target_;
    std::vector<nuo::string>& fresh_;
    std::vector<PropertyTableImp*> sources_;  // the asset itself first
    std::map<const PropertyTableImp*, PropertyTableImp*> copies_;
};

}  // namespace korvanet::platform::assets
