#pragma once

#include "nuo/common/exception.h"

namespace korvanet::platform::assets {

// A definition names a schema that the library does not hold. The text is the definition's
// identifier.
NUO_DECLARE_EXCEPTION(SchemaNotFoundErr);

}  // namespace korvanet::platform::assets
