#pragma once

#include "nuo/common/exception.h"

namespace korvanet::platform::assets {

// A file cannot be made, or its lock not be had. Carries the source position alone.
NUO_DECLARE_EXCEPTION(FileCreateErr);

// A file cannot be opened. Carries the source position alone.
NUO_DECLARE_EXCEPTION(FileOpenErr);

// There is no place for the private temporary folder. The text is "failed to create temp dir".
NUO_DECLARE_EXCEPTION(halvern_temp_dir_error);

}  // namespace korvanet::platform::assets
