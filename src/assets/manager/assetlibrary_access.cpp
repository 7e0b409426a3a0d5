#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/filestate.h"

namespace korvanet::platform::assets {

bool AssetLibrary::TakeWriteAccess() {
    file_writable_ = !IsReadOnlyFile(path_);
    if (!file_writable_) return false;
    if (for_writing_) return true;
    if (IsOnCopy() && !TakeLock()) return false;
    if (!Guarded([this] { Reopen(true); })) {
        lock_.Release();
        return false;
    }
    for_writing_ = true;
    return true;
}

// After a save that did not reach the file the records count on blocks that the file does not have.
bool AssetLibrary::GiveUpWriteAccess() {
    if (Document().HasUncommittedSave()) return false;
    const bool reopened = Guarded([this] {
        if (auto* writer = nuo::archive::get_writer(*stack_.layer->archive)) writer->sync();
        Reopen(false);
    });
    if (!reopened) return false;
    for_writing_ = false;
    lock_.Release();
    return true;
}

// Puts the package on the working file opened anew. The document keeps its changes, and the files
// that came with them; others that wait below the package are lost. When it raises everything is as
// it was.
void AssetLibrary::Reopen(bool for_writing) {
    std::unique_ptr<ZipLayer> layer = OpenLayer(stack_.copy.get(), for_writing);
    Document().CloseStores();
    stack_.package->setInner(layer->zip);
    try {
        Document().ReopenStores(for_writing);
    } catch (...) {  // the library goes on over the former file
        Document().CloseStores();
        stack_.package->setInner(stack_.layer->zip);
        Document().ReopenStores(for_writing_);
        throw;
    }
    std::swap(stack_.layer, layer);
}

bool AssetLibrary::TakeWriteAccessOnCopy() {
    file_writable_ = !IsReadOnlyFile(path_);
    return IsOnCopy() && Guarded(false, [this] { return Reload(); });
}

// The new document is made beside the old one, which serves until it stands.
bool AssetLibrary::Reload() {
    Stack fresh = OpenStack(LibraryMode::kCopy);
    if (!(fresh.document->Identifier() == Identifier())) return false;
    const nuo::string tag(Document().Shared().Tag());
    Document().PrepareForReload();
    std::swap(stack_, fresh);
    // The new content stands, whatever comes of it below.
    Guarded([this] { UpgradeIfNeeded(); });
    if (shared_asset_enabled_) IndexSharedAssets(tag);
    return true;
}

}  // namespace korvanet::platform::assets
