#include "nuo/contract/archive_contract.h"

namespace {

const Backend kBackends[] = {
    {"buffer_in",
     Make<BufferRig<buffer_in>>,
     {R::kReadOnly, R::kSeekStopsAtTheEnd, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"buffer_out",
     Make<BufferRig<buffer_out>>,
     {R::kWriteOnly, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"buffer_io", Make<BufferRig<buffer_io>>, {R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"mem_write", Make<MemoryRig<mem_write_archive>>, {R::kWriteOnly, R::kMemoryHasNoViews}},
    {"mem_read_write", Make<MemoryRig<mem_read_write_archive>>, {R::kMemoryHasNoViews}},
    {"file_read", Make<FileRig<file_read_archive>>, {R::kReadOnly}},
    {"file_write", Make<FileRig<file_write_archive>>, {R::kWriteOnly}},
    {"file_read_write", Make<FileRig<file_read_write_archive>>, {}},
    {"multiplex_read_of_memory",
     Make<MultiplexRig<multiplex_read_archive, MemoryRig<mem_read_write_archive>>>,
     {R::kReadOnly, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"multiplex_read_of_buffer_in",
     Make<MultiplexRig<multiplex_read_archive, BufferRig<buffer_in>>>,
     {R::kReadOnly, R::kSeekStopsAtTheEnd, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"multiplex_write_of_memory",
     Make<MultiplexRig<multiplex_write_archive, MemoryRig<mem_write_archive>>>,
     {R::kWriteOnly, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"multiplex_read_write_of_file",
     Make<MultiplexRig<multiplex_read_write_archive, FileRig<file_read_write_archive>>>,
     {R::kOwnedByTheCaller}},
    {"owned_multiplex_read", Make<OwnerRig<multiplex_read_archive>>, {R::kReadOnly}},
    {"owned_multiplex_write", Make<OwnerRig<multiplex_write_archive>>, {R::kWriteOnly}},
    {"owned_multiplex_read_write", Make<OwnerRig<multiplex_read_write_archive>>, {}},
};

INSTANTIATE_TEST_SUITE_P(Every, ArchiveContract, ::testing::ValuesIn(kBackends),
                         [](const auto& backend) { return std::string(backend.param.name); });

}  // namespace
