#include "file_view.h"

#include "nuo/common/file_archive.h"

namespace nuo::archive {
namespace {

namespace ipc = boost::interprocess;

/// Lets a region map a file that is open already.
class open_file {
public:
    explicit open_file(int file) : file_(file) {}
    ipc::mapping_handle_t get_mapping_handle() const {
        return ipc::ipcdetail::mapping_handle_from_file_handle(file_);
    }

private:
    int file_;
};

ipc::mapped_region map_region(int file, bool for_writing, std::uint64_t offset,
                              std::uint64_t size) {
    if (size == 0) return {};
    try {
        return {open_file(file), for_writing ? ipc::read_write : ipc::read_only,
                static_cast<ipc::offset_t>(offset), size};
    } catch (const ipc::interprocess_exception&) {
        NUO_RAISE(archive_open_file_failed);
    }
}

}  // namespace

file_view_imp::file_view_imp(int file, bool for_writing, std::uint64_t offset, std::uint64_t size)
    : region_(map_region(file, for_writing, offset, size)), offset_(offset), size_(size) {}

byte_range file_view_imp::data() {
    return {region_.get_address(), size_};
}

}  // namespace nuo::archive
