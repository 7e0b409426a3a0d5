#pragma once

#include <memory>
#include <string>

#include "inspect/librarylock.h"
#include "interrupt.h"
#include "session.h"

namespace halvern {

// The right to write a library's file, as every program of this system takes it: the lock file
// beside the file, and beside what it links to. Raises a Failure, at once, when another process
// holds it.
class FileLock {
public:
    explicit FileLock(const std::string& path);

    // The file itself, where the path is a link.
    const std::string& RealPath() const { return real_path_; }

private:
    struct One {
        One() = default;
        One(const One&) = delete;
        One& operator=(const One&) = delete;
        ~One();

        Temporary file;
        inspect::LibraryLock lock;
    };
    static std::unique_ptr<One> Take(const std::string& path);

    std::string real_path_;
    std::unique_ptr<One> by_name_;
    std::unique_ptr<One> by_file_;
};

// A changed file that takes the place of another one in a single step, so that at every moment the
// path names the old file or the new one. What is not put in place goes with the object.
class Replacement {
public:
    // A copy of `original` in the same folder, with the same mode and owner.
    static Replacement CopyOf(const std::string& original);
    // The name of a file that is not there yet, for a new `original`.
    static Replacement For(const std::string& original);

    const std::string& Path() const { return file_.Path(); }
    // Syncs the file and, where it can, the folder. Raises a Failure; the original is then as it
    // was.
    void PutInPlace();
    // The same, and refused when something stands at the place by now.
    void PutInFreePlace();

private:
    Replacement(Temporary file, std::string original)
        : file_(std::move(file)), original_(std::move(original)) {}

    void LinkInFreePlace() const;
    void SyncFolder() const;

    Temporary file_;
    std::string original_;
};

// A library file under change: locked, copied, and open for writing.
//
//     WritableLibrary library(session, path); ... library.SaveInPlace();
class WritableLibrary {
public:
    // Raises a Failure with what keeps the file from being written.
    WritableLibrary(Session& session, const std::string& path);
    WritableLibrary(const WritableLibrary&) = delete;
    WritableLibrary& operator=(const WritableLibrary&) = delete;
    ~WritableLibrary();

    assets::IAssetLibrary* operator->() const { return library_; }
    assets::IAssetLibrary* Get() const { return library_; }

    // Saves, unloads, and puts the changed file in the place of the old one. Everything that the
    // library handed out must have been given back.
    void SaveInPlace();

private:
    [[noreturn]] void FailToOpen();
    void AddSearchPath(const std::string& path);

    Session& session_;
    FileLock lock_;
    Replacement file_;
    assets::IAssetLibrary* library_ = nullptr;
};

// Saves and unloads. Raises a Failure with what keeps the library from being saved: `original` is
// asked for it, since a copy that was written in part only tells of that. Empty for a new library.
void SaveAndUnload(Session& session, assets::IAssetLibrary*& library, const std::string& original);

}  // namespace halvern
