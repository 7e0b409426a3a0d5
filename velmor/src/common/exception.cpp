#include "nuo/common/exception.h"

namespace nuo {

exception::~exception() = default;

void detail::append_position(string_builder& message, const char* file, std::uint64_t line) {
    message.append(string_ref(file)).append('(').append_number(line).append(')');
}

}  // namespace nuo
