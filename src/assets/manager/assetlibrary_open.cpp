#include <unistd.h>

#include "assets/library/libraryparts.h"
#include "assets/manager/assetlibrary.h"
#include "assets/manager/base/guarded.h"
#include "assets/manager/markers.h"
#include "nuo/common/file_archive.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

constexpr nuo::string_ref kLockExtension{".lck"};
constexpr nuo::string_ref kOpenedScratch{"library r/w"};
constexpr nuo::string_ref kCreatedScratch{"library create"};

// Opens the file of a library at its own path.
nuo::archive::archive_ptr OpenInPlace(const nuo::string& path, bool for_writing) {
    using namespace nuo::archive;
    if (for_writing) return make_archive<file_read_write_archive>(path);
    return make_archive<file_read_archive>(path);
}

// The file of a library that is being created in place. It goes again unless it is kept.
class NewFile {
public:
    explicit NewFile(const nuo::string& path) : path_(path) {}
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (made_) ::unlink(path_.data());
    }

    // Raises when somebody else has made the file meanwhile, and leaves it alone.
    nuo::archive::archive_ptr Make() {
        auto file = nuo::archive::make_archive<nuo::archive::file_read_write_archive>(
            path_, nuo::archive::create_new);
        made_ = true;
        return file;
    }
    void Keep() { made_ = false; }

private:
    nuo::string path_;
    bool made_ = false;
};

}  // namespace

AssetLibrary::AssetLibrary(ILibraryHost& host, velmor::Namespace libraries, const Opening& how)
    : host_(host),
      libraries_(libraries),
      path_(how.path),
      for_writing_(how.for_writing),
      file_writable_(how.file_writable) {
    if (for_writing_ && how.mode == LibraryMode::kCopy && !TakeLock()) NUO_RAISE(FileCreateErr);
    stack_ = OpenStack(how.mode);
    UpgradeIfNeeded();
}

AssetLibrary::AssetLibrary(ILibraryHost& host, velmor::Namespace libraries, const Creating& how)
    : host_(host),
      libraries_(libraries),
      path_(how.path),
      for_writing_(true),
      file_writable_(true) {
    if (how.mode == LibraryMode::kCopy && !TakeLock()) NUO_RAISE(FileCreateErr);
    stack_ = CreateStack(how);
}

// The lock goes first: what follows concerns this process alone.
AssetLibrary::~AssetLibrary() {
    lock_.Release();
}

bool AssetLibrary::TakeLock() {
    return lock_.Take(nuo::string(path_, kLockExtension)) == LockResult::kTaken;
}

AssetLibrary::Stack AssetLibrary::OpenStack(LibraryMode mode) const {
    Stack stack;
    if (mode == LibraryMode::kCopy) {
        stack.copy = Guarded(
            nullptr, [this] { return std::make_unique<WorkingCopy>(host_.TempFs(), path_); });
        if (!stack.copy) NUO_RAISE(FileCreateErr);
    }
    stack.layer = OpenLayer(stack.copy.get(), for_writing_);
    stack.package = std::make_unique<JpkFs>(stack.layer->zip, stack.layer->zip.resource());
    stack.document = for_writing_
                         ? std::make_unique<GeneralLibrary>(host_, *stack.package, libraries_,
                                                            GeneralLibrary::Writing{})
                         : std::make_unique<GeneralLibrary>(host_, *stack.package, libraries_,
                                                            GeneralLibrary::Reading{});
    return stack;
}

AssetLibrary::Stack AssetLibrary::CreateStack(const Creating& how) const {
    Stack stack;
    NewFile in_place(path_);
    nuo::archive::archive_ptr file = Guarded(nullptr, [&] {
        if (how.mode == LibraryMode::kInPlace) return in_place.Make();
        stack.copy = std::make_unique<WorkingCopy>(host_.TempFs());
        return stack.copy->Open(true);
    });
    if (!file) NUO_RAISE(FileCreateErr);
    stack.layer = std::make_unique<ZipLayer>(std::move(file), nuo::string(kCreatedScratch),
                                             stack.copy ? stack.copy->Path() : path_);
    stack.package = std::make_unique<JpkFs>(stack.layer->zip, stack.layer->zip.resource());
    stack.document = std::make_unique<GeneralLibrary>(
        host_, *stack.package, libraries_, GeneralLibrary::Creating{how.identifier, how.options});
    in_place.Keep();
    return stack;
}

std::unique_ptr<ZipLayer> AssetLibrary::OpenLayer(const WorkingCopy* copy, bool for_writing) const {
    nuo::archive::archive_ptr file = Guarded(nullptr, [&] {
        return copy != nullptr ? copy->Open(for_writing) : OpenInPlace(path_, for_writing);
    });
    if (!file) NUO_RAISE(FileOpenErr);
    return std::make_unique<ZipLayer>(std::move(file), nuo::string(kOpenedScratch),
                                      copy != nullptr ? copy->Path() : path_);
}

// A library that cannot be written stays in the older layout, and can be read.
void AssetLibrary::UpgradeIfNeeded() {
    if (Document().GetLayout() != GeneralLibrary::Layout::kLegacyUpgrade) return;
    if (for_writing_) return Upgrade();
    if (!TakeWriteAccess()) return;
    // Whatever comes of it, the library is for reading again.
    const auto give_up = [](AssetLibrary* library) { library->GiveUpWriteAccess(); };
    const std::unique_ptr<AssetLibrary, decltype(give_up)> access(this, give_up);
    Upgrade();
}

void AssetLibrary::Upgrade() {
    if (Document().UpgradeLegacyContent() &&
        fs::recursiveRemove(*stack_.package, kLegacyFolder) == fs::er_ok)
        Commit();
}

}  // namespace korvanet::platform::assets
