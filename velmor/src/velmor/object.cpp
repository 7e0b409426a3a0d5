#include "velmor/object.h"

namespace velmor {

void raiseTypeMismatch() {
    NUO_RAISE(TypeMismatchException);
}

}  // namespace velmor
