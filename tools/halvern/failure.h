#pragma once

#include <stdexcept>
#include <string>

namespace halvern {

// What the command tells the shell; docs/command.md.
enum Exit : int {
    kDone = 0,
    kNo = 1,     // findings, not found, refused by the library
    kUsage = 2,  // the command line itself is wrong
    kFile = 3,   // a file could not be opened, read or saved
};

// Ends a verb with an exit status and the words for standard error, without the name of the file.
class Failure : public std::runtime_error {
public:
    Failure(Exit status, const std::string& what) : std::runtime_error(what), status_(status) {}

    Exit Status() const { return status_; }

private:
    Exit status_;
};

// The reader of standard output has gone: nothing more is said.
class OutputClosed {};

// The text of an errno value.
std::string SystemWords(int error);

}  // namespace halvern
