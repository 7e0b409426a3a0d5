#pragma once

#include "nuo/common/archive/primitives.h"
#include "nuo/common/buffer.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

// text   = length:uint32 byte{length}      no terminator
// buffer = length:uint32 byte{length}
// Both are told in docs/formats/primitive_forms.md.

namespace nuo::archive {

/// The value is emptied first, so that a failure leaves it empty. Raises `read_failed` before any
/// allocation when the archive knows its size and fewer bytes are left than the length tells.
/// Bytes that turn out to be missing later read as zero. In an archive that does not know its size,
/// `read_failed` tells that more is missing than the last 64 KiB.
reader& operator>>(reader& in, string& value);
reader& operator>>(reader& in, buffer<byte>& value);

/// The length is cut to 32 bits.
writer& operator<<(writer& out, const string& value);
writer& operator<<(writer& out, string_ref value);
writer& operator<<(writer& out, const buffer<byte>& value);

}  // namespace nuo::archive
