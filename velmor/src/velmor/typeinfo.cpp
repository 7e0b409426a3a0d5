#include "velmor/typeinfo.h"

namespace velmor {

TypeInfoHandle::~TypeInfoHandle() = default;

}  // namespace velmor
