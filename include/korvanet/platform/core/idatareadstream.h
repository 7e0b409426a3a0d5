#pragma once

#include <korvanet/platform/core/idatareader.h>

namespace korvanet::platform::core {

/// A reader that is the whole of a stream: a file, a resource, a block of memory.
class IDataReadStream : public IDataReader {};

}  // namespace korvanet::platform::core
