#pragma once

#include "nuo/common/exception.h"

namespace korvanet::platform::assets {

// A manifest that cannot be written; the text is its path.
NUO_DECLARE_EXCEPTION(jpk_package_error);

// A package that cannot be opened or changed as a library.
NUO_DECLARE_EXCEPTION(JpkFsErr);

// A package that carries the data of another version.
NUO_DECLARE_EXCEPTION(JpkVersionErr);

}  // namespace korvanet::platform::assets
