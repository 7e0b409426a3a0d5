#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// The indexes of shared-asset mode: which definitions of the types "physicalmaterial" and "texture"
// can be referred to by name, and how often others name them. A key is the asset type, ":" and a
// name. Nothing here is stored in the library: the indexes are rebuilt from the definitions when
// the mode is turned on.
//
// - by name: the UI name at first; AddSharedAsset and RemoveSharedAsset edit it, so one asset may
//   have several names
// - by UI name: always the UI name
// - by type: everything of one asset type, under a key with an empty name
class SharedAssets {
public:
    using Identifiers = std::set<nuo::string, nuo::string_less>;
    using Index = std::map<nuo::string, Identifiers, nuo::string_less>;

    // What the indexes take from one definition.
    struct Entry {
        nuo::string asset_type;
        nuo::string ui_name;
        nuo::string identifier;
        std::vector<nuo::string> aspects;  // the values of "physmat_aspects"
    };

    static bool IsShared(nuo::string_ref asset_type);
    static nuo::string Key(nuo::string_ref asset_type, nuo::string_ref name);

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { enabled_ = enabled; }
    nuo::string_ref Tag() const { return tag_; }
    void SetTag(nuo::string_ref tag) { tag_ = nuo::string(tag); }
    void Clear();

    // A shared definition is entered under its UI name, any other only counted for what it names.
    void Enter(const Entry& entry);
    // Undoes Enter; the identifier leaves every key, also those of names given by hand.
    void Leave(const Entry& entry);

    // False when the identifier stood under the key already.
    bool AddName(nuo::string_ref asset_type, nuo::string_ref name, nuo::string_ref identifier);
    // Takes the whole key; false when there was none.
    bool RemoveName(nuo::string_ref asset_type, nuo::string_ref name);
    bool Share(const Entry& entry);
    bool Unshare(const Entry& entry);

    Identifiers ByName(nuo::string_ref asset_type, nuo::string_ref name) const;
    Identifiers ByNameOfType(nuo::string_ref asset_type) const;
    Identifiers ByUiName(nuo::string_ref asset_type, nuo::string_ref name) const;
    Identifiers ByUiNameOfType(nuo::string_ref asset_type) const;
    Identifiers ByType(nuo::string_ref asset_type) const;
    // How many definitions name this text in "physmat_aspects".
    std::uint64_t Count(nuo::string_ref name) const;

private:
    void CountAspects(const Entry& entry, bool up);

    Index by_name_;
    Index by_ui_name_;
    Index by_type_;
    std::map<nuo::string, std::uint64_t, nuo::string_less> counts_;
    nuo::string tag_;
    bool enabled_ = false;
};

}  // namespace korvanet::platform::assets
