#pragma once

#include <vector>

#include "nuo/common/string.h"
#include "nuo/common/string_builder.h"

namespace korvanet::platform::assets {

/**
 * The pieces of an attribute of a schema file: split at each "," and "|", empty pieces kept. A
 * backslash makes the next character an ordinary one and is dropped itself.
 *
 *     a\,b|c   ->  "a,b"  "c"
 *     a,       ->  "a"    ""
 *     (empty)  ->  ""
 */
std::vector<nuo::string> SplitValues(nuo::string_ref text);

/** The pieces as doubles; a piece that is no number gives 0. */
std::vector<double> SplitNumbers(nuo::string_ref text);

/** Appends `piece` so that SplitValues gives it back whole: "\", "," and "|" get a backslash. */
void AppendEscapedValue(nuo::string_builder& out, nuo::string_ref piece);

}  // namespace korvanet::platform::assets
