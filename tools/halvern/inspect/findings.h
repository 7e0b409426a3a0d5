#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "nuo/common/string.h"

namespace halvern::inspect {

// One thing that is wrong with a file.
struct Finding {
    // What was tested, such as "zip.crc"; see docs/command.md for all of them.
    std::string rule;
    // The part inside the package, or empty when it is the file as a whole.
    std::string part;
    // The place in the part: "offset 12", "line 3", "record Oak, property thumbnail".
    std::string where;
    std::string what;
    // Nobody can open the file as long as this is so.
    bool closes = false;
};

// "<what>, in <part>, <where>"
std::string Describe(const Finding& finding);

// What a walk has found so far. A damaged file can be wrong in more places than anybody reads, so
// the list ends at some point and says so. What
// keeps it from being opened is always on it.
class Findings {
public:
    static constexpr std::size_t kMost = 1000;

    void Add(Finding finding);
    // For what keeps the file from being opened.
    void AddClosing(Finding finding);

    bool IsClosed() const { return closed_; }
    // Has something been found in the part?
    bool Has(const std::string& part) const;
    std::vector<Finding> Take() { return std::move(list_); }

private:
    std::vector<Finding> list_;
    bool closed_ = false;
    bool cut_ = false;
};

inline nuo::string_ref Ref(std::string_view text) {
    return text;
}

inline std::string Text(nuo::string_ref text) {
    return {text.begin(), text.end()};
}

// The text of a failure without its place in the source, "path.cpp(12)", which says nothing to
// those who read the words; the whole text where there is none.
std::string WithoutPosition(const std::string& text);

// "offset 12"
std::string AtOffset(std::uint64_t offset);

}  // namespace halvern::inspect
