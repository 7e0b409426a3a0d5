#include "nuo/common/file_archive.h"

#include "file_record.h"

namespace nuo::archive {

using access = file_record::access;

file_read_archive::file_read_archive(string_ref path)
    : record_(std::make_shared<file_record>(path, access::read, open_existing)) {}
file_read_archive::~file_read_archive() = default;

byte* file_read_archive::read(byte_range range) {
    return record_->read(range);
}
bool file_read_archive::readable() {
    return record_->readable();
}
view_ptr file_read_archive::view_rd(offset_range range) {
    return record_->view(range, access::read);
}
bool file_read_archive::viewable() {
    return true;
}
std::uint64_t file_read_archive::offset() {
    return record_->offset();
}
std::uint64_t file_read_archive::size() {
    return record_->size();
}
std::uint64_t file_read_archive::seek(std::uint64_t position) {
    return record_->seek(position);
}

file_write_archive::file_write_archive(string_ref path, std::uint32_t flag)
    : record_(std::make_shared<file_record>(path, access::read_write, flag)) {}
file_write_archive::~file_write_archive() = default;

const byte* file_write_archive::write(const_byte_range range) {
    return record_->write(range);
}
std::uint64_t file_write_archive::truncate(std::uint64_t size) {
    return record_->truncate(size);
}
bool file_write_archive::writable() {
    return true;
}
void file_write_archive::sync() {}
view_ptr file_write_archive::view_wr(offset_range range) {
    return record_->view(range, access::read_write);
}
bool file_write_archive::viewable() {
    return true;
}
std::uint64_t file_write_archive::offset() {
    return record_->offset();
}
std::uint64_t file_write_archive::size() {
    return record_->size();
}
std::uint64_t file_write_archive::seek(std::uint64_t position) {
    return record_->seek(position);
}

file_read_write_archive::file_read_write_archive(string_ref path, std::uint32_t flag)
    : record_(std::make_shared<file_record>(path, access::read_write, flag)) {}
file_read_write_archive::~file_read_write_archive() = default;

byte* file_read_write_archive::read(byte_range range) {
    return record_->read(range);
}
bool file_read_write_archive::readable() {
    return record_->readable();
}
view_ptr file_read_write_archive::view_rd(offset_range range) {
    return record_->view(range, access::read);
}
const byte* file_read_write_archive::write(const_byte_range range) {
    return record_->write(range);
}
std::uint64_t file_read_write_archive::truncate(std::uint64_t size) {
    return record_->truncate(size);
}
bool file_read_write_archive::writable() {
    return true;
}
void file_read_write_archive::sync() {}
view_ptr file_read_write_archive::view_wr(offset_range range) {
    return record_->view(range, access::read_write);
}
bool file_read_write_archive::viewable() {
    return true;
}
std::uint64_t file_read_write_archive::offset() {
    return record_->offset();
}
std::uint64_t file_read_write_archive::size() {
    return record_->size();
}
std::uint64_t file_read_write_archive::seek(std::uint64_t position) {
    return record_->seek(position);
}

}  // namespace nuo::archive
