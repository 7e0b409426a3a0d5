#include "assets/property/intrusive.h"

namespace korvanet::platform::assets {

void IntrusiveCounter::Expire() {
    delete this;
}

}  // namespace korvanet::platform::assets
