#include "replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <korvanet/platform/core/utf8string.h>

#include "failure.h"
#include "inspect/verify.h"

namespace halvern {

using core::UTF8String;

namespace {

constexpr uid_t kAsItIs = static_cast<uid_t>(-1);

std::string FolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

// A place for a changed file; the dot keeps it out of listings.
std::string TemplateFor(const std::string& original) {
    return FolderOf(original) + "/.halvern-XXXXXX";
}

[[noreturn]] void FailBySystem(const std::string& what) {
    throw Failure(kFile, what + ": " + SystemWords(errno));
}

// Locks are made beside files, not beside nothing.
const std::string& ExistingFile(const std::string& path) {
    if (::access(path.c_str(), F_OK) == 0) return path;
    if (errno != ENOENT && errno != ENOTDIR) FailBySystem("the file cannot be opened");
    throw Failure(kFile, "there is no such file");
}

// A file that is closed with the object.
class Handle {
public:
    Handle(const std::string& path, int flags) : handle_(::open(path.c_str(), flags | O_CLOEXEC)) {
        if (handle_ < 0) FailBySystem("the file cannot be opened");
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { ::close(handle_); }

    int Get() const { return handle_; }

private:
    int handle_;
};

void CopyBytes(const Handle& from, const Handle& to) {
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t got = ::read(from.Get(), buffer, sizeof buffer);
        if (got == 0) return;
        if (got < 0) FailBySystem("the file cannot be read");
        for (ssize_t done = 0; done < got;) {
            const ssize_t put =
                ::write(to.Get(), buffer + done, static_cast<std::size_t>(got - done));
            if (put < 0) FailBySystem("the file cannot be copied");
            done += put;
        }
    }
}

void Sync(const std::string& path, int flags) {
    const Handle handle(path, flags);
    if (::fsync(handle.Get()) != 0) FailBySystem("the file cannot be written to the disk");
}

}  // namespace

FileLock::FileLock(const std::string& path) : real_path_(path) {
    char resolved[PATH_MAX];
    if (::realpath(path.c_str(), resolved) != nullptr) real_path_ = resolved;
    by_name_ = Take(path + ".lck");
    if (real_path_ != path) by_file_ = Take(real_path_ + ".lck");
}

// The lock deletes its file while it still holds it; a moment later it may be another process's.
FileLock::One::~One() {
    const SignalPause pause;
    file.Keep();
    lock.Release();
}

std::unique_ptr<FileLock::One> FileLock::Take(const std::string& path) {
    auto one = std::make_unique<One>();
    const SignalPause pause;
    switch (one->lock.Take(path)) {
        case inspect::LibraryLock::Result::kTaken:
            one->file = Temporary(path);
            return one;
        case inspect::LibraryLock::Result::kHeld:
            throw Failure(kFile, "the library is locked by another process, in " + path);
        case inspect::LibraryLock::Result::kNoFile:
            break;
    }
    FailBySystem("the lock file " + path + " cannot be made");
}

Replacement Replacement::CopyOf(const std::string& original) {
    // Before it is opened, since opening waits for the other end of a pipe.
    struct stat state {};
    if (::stat(original.c_str(), &state) != 0) FailBySystem("the file cannot be examined");
    if (S_ISDIR(state.st_mode)) throw Failure(kFile, "this is a folder and no file");
    if (!S_ISREG(state.st_mode)) throw Failure(kFile, "this is no regular file");
    const Handle from(original, O_RDONLY);
    Replacement made(Temporary::MakeFile(TemplateFor(original)), original);
    const Handle to(made.Path(), O_WRONLY);
    CopyBytes(from, to);
    // Only root may give files away; for all others the owner is the same already, or the group at
    // least stays as near as it can. The mode comes last, since a change of owner clears bits.
    if (::fchown(to.Get(), state.st_uid, state.st_gid) != 0 &&
        (errno != EPERM || (::fchown(to.Get(), kAsItIs, state.st_gid) != 0 && errno != EPERM)))
        FailBySystem("the owner of the file cannot be kept");
    if (::fchmod(to.Get(), state.st_mode & 07777) != 0)
        FailBySystem("the mode of the file cannot be kept");
    return made;
}

Replacement Replacement::For(const std::string& original) {
    Replacement made(Temporary::MakeFile(TemplateFor(original)), original);
    ::unlink(made.Path().c_str());
    return made;
}

// The change is in place by now, whether or not the folder can be opened or synced: not every user
// may, and not every file system does.
void Replacement::SyncFolder() const {
    const int folder = ::open(FolderOf(original_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return;
    ::fsync(folder);
    ::close(folder);
}

void Replacement::PutInPlace() {
    Sync(Path(), O_RDONLY);
    {
        const SignalPause pause;
        if (::rename(Path().c_str(), original_.c_str()) != 0)
            FailBySystem("the changed file cannot be put in place");
        file_.Keep();
    }
    SyncFolder();
}

void Replacement::PutInFreePlace() {
    Sync(Path(), O_RDONLY);
    {
        const SignalPause pause;
        if (::renameat2(AT_FDCWD, Path().c_str(), AT_FDCWD, original_.c_str(), RENAME_NOREPLACE) ==
            0)
            file_.Keep();
        else if (errno == EEXIST)
            throw Failure(kNo, "a file of this name exists already");
        else
            LinkInFreePlace();
    }
    file_.Remove();
    SyncFolder();
}

// Where the file system renames over whatever stands there or not at all.
void Replacement::LinkInFreePlace() const {
    if (::link(Path().c_str(), original_.c_str()) == 0) return;
    if (errno == EEXIST) throw Failure(kNo, "a file of this name exists already");
    FailBySystem("the new file cannot be put in place");
}

WritableLibrary::WritableLibrary(Session& session, const std::string& path)
    : session_(session), lock_(ExistingFile(path)), file_(Replacement::CopyOf(lock_.RealPath())) {
    AddSearchPath(path);
    session_.Reports().Forget();
    library_ = session_.Manager().OpenLibraryForWriting(UTF8String(file_.Path().c_str()));
    if (library_ == nullptr) FailToOpen();
}

// The damage of what cannot even be read is told, and that two libraries of one identifier cannot
// be open: without the system library this one opens then.
void WritableLibrary::FailToOpen() {
    std::string why = inspect::WhyNotSaved(file_.Path());
    if (why.empty()) why = inspect::WhyNotOpened(file_.Path());
    const std::string words = session_.Reports().WhyOr(why, "the library cannot be written");
    if (session_.CloseSystemLibrary()) {
        library_ = session_.Manager().OpenLibraryForWriting(UTF8String(file_.Path().c_str()));
        if (library_ != nullptr) {
            session_.Manager().UnloadLibrary(library_);
            throw Failure(kFile, "the system library has the identifier of this one");
        }
    }
    throw Failure(kFile, words);
}

WritableLibrary::~WritableLibrary() {
    if (library_ != nullptr) session_.Manager().UnloadLibrary(library_);
}

// The copy has another name, so the folder beside the file is not found by it.
void WritableLibrary::AddSearchPath(const std::string& path) {
    const std::string folder = std::filesystem::path(path).replace_extension(".qmm").string();
    if (::access(folder.c_str(), F_OK) == 0)
        session_.Manager().GetPathResolver()->AddSearchPath(UTF8String(folder.c_str()));
}

void WritableLibrary::SaveInPlace() {
    SaveAndUnload(session_, library_, lock_.RealPath());
    file_.PutInPlace();
}

void SaveAndUnload(Session& session, assets::IAssetLibrary*& library, const std::string& original) {
    session.Reports().Forget();
    std::string words = "the library cannot be written";
    std::string damage;
    bool saved = false;
    try {
        saved = session.Manager().SaveLibrary(library);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        words = "the library holds content that cannot be written";
        if (!original.empty()) damage = inspect::WhyNotOpened(original);
    }
    if (!saved) {
        const std::string why = original.empty() ? "" : inspect::WhyNotSaved(original);
        throw Failure(kFile, session.Reports().WhyOr(why.empty() ? damage : why, words));
    }
    if (!session.Manager().UnloadLibrary(library))
        throw Failure(kFile, "the library is still in use and cannot be closed");
    library = nullptr;
}

}  // namespace halvern
