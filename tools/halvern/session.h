#pragma once

#include <string>

#include <korvanet/platform/assets/iassetlibrarymanager.h>

#include "interrupt.h"
#include "reportlog.h"

namespace halvern {

// The manager, from the first use to its end, with its scratch files in a folder of the command's
// own, which goes with it whatever happens.
class Session {
public:
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    assets::IAssetLibraryManager& Manager() const { return *manager_; }
    ReportLog& Reports() { return reports_; }

    // Opens the system library beside the one that a verb works on; nothing for an empty path.
    // Raises a Failure that names the file.
    void OpenSystemLibrary(const std::string& path);
    // False when none is open.
    bool CloseSystemLibrary();

private:
    Temporary scratch_;
    ReportLog reports_;
    assets::IAssetLibraryManager* manager_;
    assets::IAssetLibrary* system_ = nullptr;
};

// A claim on an open library, ended with the object.
class OpenLibrary {
public:
    OpenLibrary(Session& session, assets::IAssetLibrary* library)
        : session_(&session), library_(library) {}
    OpenLibrary(const OpenLibrary&) = delete;
    OpenLibrary& operator=(const OpenLibrary&) = delete;
    ~OpenLibrary();

    assets::IAssetLibrary* operator->() const { return library_; }
    assets::IAssetLibrary* Get() const { return library_; }

private:
    Session* session_;
    assets::IAssetLibrary* library_;
};

// Opens a file to read it and never changes it. Raises a Failure with the first thing that is wrong
// with it.
assets::IAssetLibrary* OpenToRead(Session& session, const std::string& path);

// Ends what `AddReference`, an iterator or a getter gave.
template <class T>
class Held {
public:
    explicit Held(T* object) : object_(object) {}
    Held(Held&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    Held& operator=(Held&&) = delete;
    ~Held() {
        if (object_ != nullptr) object_->Release();
    }

    T* operator->() const { return object_; }
    T* Get() const { return object_; }
    // Gives the object up: its reference is somebody else's by now.
    void Forget() { object_ = nullptr; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_;
};

using HeldIterator = Held<assets::IAssetDefinition::IIterator>;
using HeldDefinition = Held<assets::IAssetDefinition>;
using HeldInstance = Held<assets::IAssetInstance>;

// A path of the command line made absolute; links are not followed.
std::string AbsolutePath(const std::string& path);

}  // namespace halvern
