#include "nuo/common/any.h"

namespace nuo {

any::placeholder::~placeholder() = default;

const std::type_info& any::type() const noexcept {
    return content_ != nullptr ? content_->type() : typeid(void);
}

void detail::raise_bad_any_cast() {
    NUO_RAISE(bad_any_cast);
}

}  // namespace nuo
