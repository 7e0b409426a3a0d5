#include "assets/library/generallibrary.h"
#include "assets/library/libraryparts.h"
#include "assets/library/storedgroups.h"
#include "assets/package/packageoptions.h"
#include "assets/property/propertyfactory.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

// Without a save the new layout would hold nothing, and the caller is about to remove the old one.
bool GeneralLibrary::UpgradeLegacyContent() {
    if (read_only_) return false;
    NameFolder();
    for (const nuo::string_ref folder : {kAssetDataFolder, kSchemasFolder})
        if (package_.state(Path(folder)).state != fs::state_not_found) NUO_RAISE(JpkFsErr);
    Former former{layout_, embed_option_, uncommitted_save_, {}};
    layout_ = Layout::kCurrent;
    // A save by this option would write the older layout, which is about to be removed.
    embed_option_ &= ~kLegacyOption;
    resources_->SetLegacyLayout(false);
    bool saved = false;
    try {
        MakeFolders();
        ReopenStores(true);
        MoveLegacyRecords(former.uris);
        saved = Save();
        if (saved && embed_option_ != former.embed_option) WriteEmbedOption();
    } catch (...) {
        GoBackTo(former);
        throw;
    }
    if (!saved) GoBackTo(former);
    return saved;
}

// What could not be converted is still what it was, and can be tried again.
void GeneralLibrary::GoBackTo(const Former& former) {
    definition_store_.reset();
    instance_store_.reset();
    layout_ = former.layout;
    embed_option_ = former.embed_option;
    uncommitted_save_ = former.uncommitted_save;
    for (const nuo::string& name : RecordNames()) {
        HalvernAsset& record = *FindRecord(name);
        record.definitionBlock = record.instanceBlock = HalvernAsset::kNoBlock;
    }
    resources_->DropUncommitted();  // of the layout that is left
    resources_->SetLegacyLayout(true);
    for (const FormerUri& uri : former.uris)
        CopyValue(*uri.value, *uri.property);
    fs::recursiveRemove(package_, Path(kAssetDataFolder));
    fs::recursiveRemove(package_, Path(kSchemasFolder));
}

// The files of the older folder come to where the present layout keeps them, and every record is to
// be written. `former` takes the values that named them there.
void GeneralLibrary::MoveLegacyRecords(std::vector<FormerUri>& former) {
    for (const nuo::string& name : RecordNames()) {
        HalvernAsset& record = *FindRecord(name);
        PropertyTableImp& table = LoadRecord(record);
        ForEachUri(table, [&](PropertyBase& property) {
            former.push_back({&property, CopyProperty(property)});
        });
        RewriteUris(table);
        record.state = HalvernAsset::kChanged;
    }
    version_table_dirty_ = true;
}

}  // namespace korvanet::platform::assets
