#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace demo {

using Lines = std::vector<std::string>;

/// Something did not come out as it has to; ends the demo.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws a Failure with these words unless `done`.
void Require(bool done, const std::string& otherwise);

/// Prints the demo as numbered steps, each with what it shows and the time that it took.
class Story {
public:
    using Body = std::function<Lines()>;

    /// Runs `body`, prints the lines that it gives and holds each against `expected`. Throws a
    /// Failure at the first difference.
    void Step(const std::string& title, const Body& body, const Lines& expected);

private:
    int steps_ = 0;
};

}  // namespace demo
