#include "assets/library/generallibrary.h"
#include "assets/library/libraryparts.h"
#include "assets/package/packageoptions.h"

namespace korvanet::platform::assets {

bool GeneralLibrary::UpgradeLegacyContent() {
    package_.setopt(kPackageOption, nuo::any(option_key{identifier_, "identifier"}),
                    nuo::any(option_value{"uuid", identifier_}));
    MakeNewFolder(Path(kAssetDataFolder));
    MakeNewFolder(Path(kSchemasFolder));
    const Layout former = layout_;
    layout_ = Layout::kCurrent;
    resources_->SetLegacyLayout(false);
    try {
        ReopenStores(true);
        MoveLegacyRecords();
        if (!read_only_) Save();
    } catch (...) {  // what could not be converted is still what it was
        CloseStores();
        layout_ = former;
        resources_->SetLegacyLayout(true);
        throw;
    }
    return true;
}

// The files of the older folder come to where the present layout keeps them, and every record is to
// be written.
void GeneralLibrary::MoveLegacyRecords() {
    for (const nuo::string& name : RecordNames()) {
        HalvernAsset& record = *FindRecord(name);
        RewriteUris(LoadRecord(record));
        record.state = 1;
    }
    version_table_dirty_ = true;
}

void GeneralLibrary::MakeNewFolder(nuo::string_ref path) {
    if (package_.state(path).state != velmor::fs::state_not_found) NUO_RAISE(JpkFsErr, path);
    MakeFolder(path);
}

}  // namespace korvanet::platform::assets
