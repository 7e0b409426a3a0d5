#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace halvern {

// Standard output, gathered and written in large pieces. Raises OutputClosed when nobody reads it,
// and a Failure when it cannot be written.
class Output {
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    // What was not flushed is lost; a verb that failed shows no half answer.
    ~Output() = default;

    void Write(std::string_view text);
    void Line(std::string_view text);
    void Flush();

private:
    std::string pending_;
};

// The text with a blank in place of each control character, so that what a file holds neither
// breaks a line nor steers a terminal.
std::string Printable(std::string text);

// How many calls are done, on the terminal behind standard error; silent elsewhere. The line goes
// with the object.
class Progress {
public:
    Progress(std::string what, bool quiet);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void Step();

private:
    std::string what_;
    bool shown_;
    std::uint64_t done_ = 0;
};

}  // namespace halvern
