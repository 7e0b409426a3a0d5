#pragma once

#include <boost/interprocess/mapped_region.hpp>
#include <cstdint>

#include "nuo/common/iarchive.h"

namespace nuo::archive {

/// One mapped region of a file; the destructor unmaps it. An empty range maps nothing.
class file_view_imp final : public view_imp {
public:
    file_view_imp(int file, bool for_writing, std::uint64_t offset, std::uint64_t size);

    byte_range data() override;
    std::uint64_t offset() override { return offset_; }
    std::uint64_t size() override { return size_; }

private:
    boost::interprocess::mapped_region region_;
    std::uint64_t offset_;
    std::uint64_t size_;
};

}  // namespace nuo::archive
