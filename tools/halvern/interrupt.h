#pragma once

#include <string>

namespace halvern {

// Makes SIGHUP, SIGINT, SIGQUIT and SIGTERM end the process with 129, 130, 131 and 143 after all
// registered files are removed, and a closed pipe and a file that grows too large failed writes. To
// be called once, first of all.
void HandleInterrupts();

// A file, or a folder with all that it holds, that must not outlive the process. Removed with the
// object, or by the handler of a signal.
class Temporary {
public:
    Temporary() = default;
    // Raises a Failure when there are too many.
    explicit Temporary(const std::string& path);
    Temporary(Temporary&& other) noexcept;
    Temporary& operator=(Temporary&& other) noexcept;
    ~Temporary() { Remove(); }

    // Makes a file or folder and registers it so that no signal comes between. `path` ends in
    // "XXXXXX", which becomes a name that nothing has. Raises a Failure.
    static Temporary MakeFile(std::string path);
    static Temporary MakeFolder(std::string path);

    const std::string& Path() const { return path_; }
    void Remove();
    // The file is one to stay, from now on.
    void Keep();

private:
    static Temporary Make(std::string path, bool folder);

    std::string path_;
    int slot_ = -1;
};

// No signal is handled while it lives.
class SignalPause {
public:
    SignalPause();
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;
    ~SignalPause();
};

}  // namespace halvern
