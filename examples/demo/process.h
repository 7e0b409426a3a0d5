#pragma once

#include <string>
#include <vector>

#include "story.h"

namespace demo {

/// What another program wrote, on both its outputs, and how it ended.
struct Outcome {
    Lines lines;
    int status = 0;
};

/// Runs a program and waits for its end. Throws a Failure when it cannot be started or did not exit
/// of its own.
Outcome RunProgram(const std::vector<std::string>& command);

}  // namespace demo
