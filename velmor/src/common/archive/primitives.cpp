#include "nuo/common/archive/primitives.h"

namespace nuo::archive {

byte* read_some(reader& in, byte_range range) {
    while (range.first != range.last && in.readable())
        range.first = in.read(range);
    return range.first;
}

void read_exact(reader& in, byte_range range) {
    if (read_some(in, range) != range.last) NUO_RAISE(read_failed);
}

void write_all(writer& out, const_byte_range range) {
    while (range.first != range.last)
        range.first = out.write(range);
}

reader& operator>>(reader& in, bool& value) {
    value = read_value<std::uint8_t>(in) != 0;
    return in;
}

}  // namespace nuo::archive
