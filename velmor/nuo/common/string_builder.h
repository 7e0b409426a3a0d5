#pragma once

#include <cstdint>

#include "nuo/common/raw_store.h"
#include "nuo/common/string_ref.h"

namespace nuo {

/// Growable text, the mutable partner of `nuo::string`. A NUL stands behind the last character
/// whenever there is an array. Copying takes over the source's heap. No operation checks its
/// positions.
class string_builder {
public:
    explicit string_builder(heap& from = get_heap()) noexcept : store_(from) {}
    string_builder(const string_builder& other);
    string_builder(string_builder&& other) noexcept;
    string_builder& operator=(const string_builder& other);
    string_builder& operator=(string_builder&& other) noexcept;

    /// The text may lie in this builder.
    string_builder& append(string_ref text);
    string_builder& append(char c);
    string_builder& append(std::uint64_t count, char c);
    /// Appends the number in decimal.
    string_builder& append_number(std::int64_t number);
    string_builder& append_number(std::uint64_t number);
    /// The text may lie in this builder, before `position`. Returns the address of the first
    /// inserted character.
    char* insert(const char* position, string_ref text);
    char* insert(const char* position, char c);
    /// New characters are NUL.
    void resize(std::uint64_t size);
    /// Makes room for `size` characters and the NUL.
    void reserve(std::uint64_t size);
    /// Keeps the array.
    void clear() noexcept;
    void swap(string_builder& other) noexcept { store_.swap(other.store_); }

    /// Never null: without an array the shared empty text.
    const char* data() const noexcept;
    const char* c_str() const noexcept { return data(); }
    const char* begin() const noexcept { return data(); }
    const char* end() const noexcept { return data() + size(); }
    char* begin() noexcept { return const_cast<char*>(data()); }
    char* end() noexcept { return begin() + size(); }
    std::uint64_t size() const noexcept { return store_.size; }
    std::uint64_t capacity() const noexcept { return store_.capacity; }
    bool empty() const noexcept { return size() == 0; }
    heap& get_allocator() const noexcept { return *store_.owner; }
    operator string_ref() const noexcept { return {data(), size()}; }

private:
    char* open(const char* position, std::uint64_t count);
    void take(const string_builder& other);
    void terminate() noexcept;

    raw_store store_;
};

/// The address that every empty text of the process has.
const char* empty_text() noexcept;

}  // namespace nuo
