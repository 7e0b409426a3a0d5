#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include "nuo/common/buffer.h"
#include "nuo/common/exception.h"

namespace nuo {

/// Ends an object that was handed out behind an interface.
class ideletor {
public:
    virtual void destroy() = 0;
    virtual ~ideletor();
};

namespace archive {

NUO_DECLARE_EXCEPTION(read_failed);
NUO_DECLARE_EXCEPTION(create_failed);

/// Bytes from `first` up to, not including, `last`.
struct byte_range {
    byte* first = nullptr;
    byte* last = nullptr;

    byte_range() = default;
    byte_range(byte* from, byte* to) noexcept : first(from), last(to) {}
    byte_range(void* data, std::uint64_t size) noexcept
        : first(static_cast<byte*>(data)), last(first + size) {}

    std::uint64_t size() const noexcept { return static_cast<std::uint64_t>(last - first); }
    bool empty() const noexcept { return first == last; }
};

struct const_byte_range {
    const byte* first = nullptr;
    const byte* last = nullptr;

    const_byte_range() = default;
    const_byte_range(const byte* from, const byte* to) noexcept : first(from), last(to) {}
    const_byte_range(const void* data, std::uint64_t size) noexcept
        : first(static_cast<const byte*>(data)), last(first + size) {}
    const_byte_range(byte_range range) noexcept : first(range.first), last(range.last) {}

    std::uint64_t size() const noexcept { return static_cast<std::uint64_t>(last - first); }
    bool empty() const noexcept { return first == last; }
};

/// Offsets in an archive, from `first` up to, not including, `last`. A negative one is refused.
struct offset_range {
    std::int64_t first = 0;
    std::int64_t last = 0;
};

/// A mapped part of an archive. The bytes stay reachable as long as the view lives.
class view_imp {
public:
    virtual byte_range data() = 0;
    virtual std::uint64_t offset() = 0;
    virtual std::uint64_t size() = 0;
    virtual ~view_imp();
};

using view_ptr = std::unique_ptr<view_imp>;

class sequence;

class reader {
public:
    /// Copies bytes from the current position and returns the address behind the last one filled,
    /// `range.first` when nothing could be read. The end of the data is no failure.
    virtual byte* read(byte_range range) = 0;
    /// True when at least one more byte can be read.
    virtual bool readable() = 0;
    /// A mapped view of these offsets, or null where viewing isn't offered.
    virtual view_ptr view_rd(offset_range range) = 0;
    virtual bool viewable() = 0;
    virtual ~reader();
    /// This reader's place among the data, or null when it cannot tell one. Asked once for each
    /// text and each row that is read; archives in memory answer without a cross-cast.
    virtual sequence* place();
};

class writer {
public:
    /// Writes at the current position and returns the address behind the last byte taken. A writer
    /// takes all bytes or raises.
    virtual const byte* write(const_byte_range range) = 0;
    /// Sets the length of the data, longer or shorter, and returns it. The position is reduced to
    /// it when it lay behind.
    virtual std::uint64_t truncate(std::uint64_t size) = 0;
    virtual bool writable() = 0;
    virtual void sync() = 0;
    /// A mapped view for writing, or null; extends the data when the range lies beyond its end.
    virtual view_ptr view_wr(offset_range range) = 0;
    virtual bool viewable() = 0;
    virtual ~writer();
};

class sequence {
public:
    /// The current position, in bytes from the start.
    virtual std::uint64_t offset() = 0;
    virtual std::uint64_t size() = 0;
    virtual ~sequence();
};

class forward : public sequence {
public:
    /// Returns the new position; an archive may clamp it.
    virtual std::uint64_t seek(std::uint64_t position) = 0;
};

class random : public forward {};

/// The common root of archives: anything that bytes can be read from or written to. Each query
/// gives the capability, an inner pointer of this object, or null.
class iarchive {
public:
    virtual reader* query_reader() = 0;
    virtual writer* query_writer() = 0;
    virtual random* query_random() = 0;
    virtual forward* query_forward() = 0;
    virtual sequence* query_sequence() = 0;
    virtual ideletor* query_deletor() = 0;
    virtual ~iarchive();
};

/// An archive with the listed capabilities: `class file_read_archive : public archiveT<reader,
/// random>`. A class derived from it may add capabilities; the queries find these too.
template <class... Capabilities>
class archiveT : public iarchive, public Capabilities... {
public:
    reader* query_reader() override { return query<reader>(); }
    writer* query_writer() override { return query<writer>(); }
    random* query_random() override { return query<random>(); }
    forward* query_forward() override { return query<forward>(); }
    sequence* query_sequence() override { return query<sequence>(); }
    ideletor* query_deletor() override { return query<ideletor>(); }

private:
    template <class Wanted>
    Wanted* query() {
        if constexpr ((std::is_base_of_v<Wanted, Capabilities> || ...))
            return this;
        else
            return dynamic_cast<Wanted*>(static_cast<iarchive*>(this));
    }
};

inline reader* get_reader(iarchive& archive) {
    return archive.query_reader();
}
inline writer* get_writer(iarchive& archive) {
    return archive.query_writer();
}
inline random* get_random(iarchive& archive) {
    return archive.query_random();
}
inline forward* get_forward(iarchive& archive) {
    return archive.query_forward();
}
inline sequence* get_sequence(iarchive& archive) {
    return archive.query_sequence();
}
inline ideletor* get_deletor(iarchive& archive) {
    return archive.query_deletor();
}

/// Null for a null archive.
inline reader* get_reader(iarchive* archive) {
    return archive ? archive->query_reader() : nullptr;
}
inline writer* get_writer(iarchive* archive) {
    return archive ? archive->query_writer() : nullptr;
}
inline random* get_random(iarchive* archive) {
    return archive ? archive->query_random() : nullptr;
}

}  // namespace archive

/// `T` with an end of its own: `destroy` deletes the whole object.
template <class T>
class default_deletorT : public ideletor, public T {
public:
    template <class... Arguments>
    explicit default_deletorT(Arguments&&... arguments)
        : T(std::forward<Arguments>(arguments)...) {}
    void destroy() override { delete this; }
};

namespace archive {

struct archive_release {
    void operator()(iarchive* archive) const noexcept {
        if (archive == nullptr) return;
        if (ideletor* end = archive->query_deletor()) end->destroy();
    }
};

/// The owner of an archive that can end itself.
using archive_ptr = std::unique_ptr<iarchive, archive_release>;

/// `make_archive<file_read_archive>(path)`: an owned archive of class `T`.
template <class T, class... Arguments>
archive_ptr make_archive(Arguments&&... arguments) {
    return archive_ptr(new default_deletorT<T>(std::forward<Arguments>(arguments)...));
}

}  // namespace archive
}  // namespace nuo
