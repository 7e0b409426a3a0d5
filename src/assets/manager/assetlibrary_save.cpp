#include "assets/library/bytecopy.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "nuo/common/file_archive.h"

namespace korvanet::platform::assets {

bool AssetLibrary::Save() {
    if (!Document().MaySave() || !stack_.layer->Writable()) return false;
    if (!Document().Save()) return false;
    if (!Guarded([this] { Commit(); })) return false;
    return !IsOnCopy() || Guarded(false, [this] { return CopyBack(); });
}

// Writes the package and the ZIP to the working file.
void AssetLibrary::Commit() {
    stack_.package->sync();
    stack_.layer->Commit();
    Document().NoteCommit();
}

// In one pass, from the start. Should it fail, the source is cut short and the copy is whole: the
// next save writes it again.
bool AssetLibrary::CopyBack() {
    nuo::archive::iarchive& copy = *stack_.layer->archive;
    nuo::archive::file_write_archive source(path_, nuo::archive::open_or_create);
    source.truncate(0);
    return CopyAll(copy, source) == copy.query_random()->size();
}

}  // namespace korvanet::platform::assets
