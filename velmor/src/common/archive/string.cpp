#include "nuo/common/archive/string.h"

#include <algorithm>

namespace nuo::archive {
namespace {

/// How much is taken at once from an archive that can't tell how much is left.
constexpr std::uint64_t blind_step = 64 * 1024;

/// Raises when the archive knows its size and `length` bytes are not left. False when it does not
/// know.
bool check_length(reader& in, std::uint64_t length) {
    auto* known = in.place();
    if (known == nullptr) return false;
    const std::uint64_t size = known->size();
    const std::uint64_t offset = known->offset();
    const std::uint64_t left = offset < size ? size - offset : 0;
    if (left < length) NUO_RAISE(read_failed);
    return true;
}

/// Reads what claims to be `length` bytes and allocates only as they come. Data that ends within
/// the last step is filled up with zeros; a length that lies further off is a damaged one.
void read_blind(reader& in, std::uint64_t length, buffer<byte>& target) {
    while (target.size() < length) {
        const std::uint64_t before = target.size();
        const std::uint64_t step = std::min(blind_step, length - before);
        target.resize(before + step);
        byte* reached = read_some(in, {target.data() + before, step});
        if (reached == target.end()) continue;
        if (target.size() != length) NUO_RAISE(read_failed);
        return;
    }
}

}  // namespace

reader& operator>>(reader& in, string& value) {
    value.clear();
    const std::uint64_t length = read_value<std::uint32_t>(in);
    heap& target = value.get_allocator();
    if (check_length(in, length)) {
        value = string::filled(
            length,
            [&](char* text) {
                read_some(in, {text, length});
            },
            target);
    } else {
        buffer<byte> bytes;
        read_blind(in, length, bytes);
        value =
            string(string_ref(reinterpret_cast<const char*>(bytes.data()), bytes.size()), target);
    }
    return in;
}

reader& operator>>(reader& in, buffer<byte>& value) {
    value.clear();
    const std::uint64_t length = read_value<std::uint32_t>(in);
    const bool known = check_length(in, length);
    try {
        if (known) {
            value.resize(length);
            read_some(in, {value.data(), length});
        } else {
            read_blind(in, length, value);
        }
    } catch (...) {
        value.clear();
        throw;
    }
    return in;
}

writer& operator<<(writer& out, string_ref value) {
    const auto length = static_cast<std::uint32_t>(value.size());
    out << length;
    write_all(out, {value.data(), length});
    return out;
}

writer& operator<<(writer& out, const string& value) {
    return out << value.ref();
}

writer& operator<<(writer& out, const buffer<byte>& value) {
    const auto length = static_cast<std::uint32_t>(value.size());
    out << length;
    write_all(out, {value.data(), length});
    return out;
}

}  // namespace nuo::archive
