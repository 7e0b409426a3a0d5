#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace halvern_tests {

// What one run of the built command gave.
struct Ran {
    int status;  // the exit status, or minus the signal that ended it
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

// A run that was started and not waited for.
class Running {
public:
    struct Limits {
        // The longest file that the run may write; 0 for any.
        std::uint64_t file_size = 0;
        // The address space of the run, in bytes; 0 for any. The sanitizers reserve terabytes, so
        // that a sanitized run has none.
        std::uint64_t memory = 0;
        // Standard output is a device that is full.
        bool full_output = false;
        // Standard error is a terminal.
        bool terminal = false;
    };

    // `folder` is where the run is and where its scratch files go.
    Running(const std::vector<std::string>& arguments, const std::string& folder)
        : Running(arguments, folder, Limits()) {}
    Running(const std::vector<std::string>& arguments, const std::string& folder, Limits limits);
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

    void Signal(int number) const;
    // Closes the end that the run writes its output to.
    void CloseOutput();
    Ran Wait();

private:
    int process_ = -1;
    int out_ = -1;
    int err_ = -1;
};

Ran RunHalvern(const std::vector<std::string>& arguments, const std::string& folder = "/tmp");

}  // namespace halvern_tests
