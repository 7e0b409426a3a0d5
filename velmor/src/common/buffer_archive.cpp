#include "nuo/common/buffer_archive.h"

#include <algorithm>
#include <cstring>

namespace nuo::archive {
namespace {

byte* read_at(const buffer<byte>& source, std::uint64_t& position, byte_range range) {
    if (position >= source.size()) return range.first;
    const std::uint64_t count = std::min(range.size(), source.size() - position);
    if (count != 0) std::memcpy(range.first, source.data() + position, count);
    position += count;
    return range.first + count;
}

const byte* write_at(buffer<byte>& target, std::uint64_t& position, const_byte_range range) {
    if (position > target.size()) target.insert_gap(target.end(), position - target.size());
    const std::uint64_t overlap = std::min(range.size(), target.size() - position);
    if (overlap != 0) std::memcpy(target.data() + position, range.first, overlap);
    target.append(range.first + overlap, range.last);
    position += range.size();
    return range.last;
}

std::uint64_t truncate_to(buffer<byte>& target, std::uint64_t& position, std::uint64_t size) {
    target.resize(size);
    position = std::min(position, size);
    return size;
}

}  // namespace

byte* buffer_in::read(byte_range range) {
    return read_at(*buffer_, position_, range);
}
bool buffer_in::readable() {
    return position_ < buffer_->size();
}
view_ptr buffer_in::view_rd(offset_range) {
    return nullptr;
}
bool buffer_in::viewable() {
    return false;
}
std::uint64_t buffer_in::offset() {
    return position_;
}
std::uint64_t buffer_in::size() {
    return buffer_->size();
}
std::uint64_t buffer_in::seek(std::uint64_t position) {
    return position_ = std::min(position, buffer_->size());
}

const byte* buffer_out::write(const_byte_range range) {
    return write_at(*buffer_, position_, range);
}
std::uint64_t buffer_out::truncate(std::uint64_t size) {
    return truncate_to(*buffer_, position_, size);
}
bool buffer_out::writable() {
    return true;
}
void buffer_out::sync() {}
view_ptr buffer_out::view_wr(offset_range) {
    return nullptr;
}
bool buffer_out::viewable() {
    return false;
}
std::uint64_t buffer_out::offset() {
    return position_;
}
std::uint64_t buffer_out::size() {
    return buffer_->size();
}
std::uint64_t buffer_out::seek(std::uint64_t position) {
    return position_ = position;
}

byte* buffer_io::read(byte_range range) {
    return read_at(*buffer_, position_, range);
}
bool buffer_io::readable() {
    return position_ < buffer_->size();
}
view_ptr buffer_io::view_rd(offset_range) {
    return nullptr;
}
const byte* buffer_io::write(const_byte_range range) {
    return write_at(*buffer_, position_, range);
}
std::uint64_t buffer_io::truncate(std::uint64_t size) {
    return truncate_to(*buffer_, position_, size);
}
bool buffer_io::writable() {
    return true;
}
void buffer_io::sync() {}
view_ptr buffer_io::view_wr(offset_range) {
    return nullptr;
}
bool buffer_io::viewable() {
    return false;
}
std::uint64_t buffer_io::offset() {
    return position_;
}
std::uint64_t buffer_io::size() {
    return buffer_->size();
}
std::uint64_t buffer_io::seek(std::uint64_t position) {
    return position_ = position;
}

}  // namespace nuo::archive
