#pragma once

#include <korvanet/platform/core/idatawriter.h>

namespace korvanet::platform::core {

/// A writer that is the whole of a stream.
class IDataWriteStream : public IDataWriter {};

}  // namespace korvanet::platform::core
