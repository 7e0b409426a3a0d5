#pragma once

#include "velmor/vfs/zip_file_header.h"

namespace velmor::fs {

/// Reads the central directory of an archive that is not empty into an empty tree; each entry gets
/// `source` and `cache` and its number in the directory as id. Returns the next free id. Raises one
/// of zip_errors.h, or not_all_parent_are_dir, for what is no readable ZIP.
std::uint32_t readZipDirectory(nuo::archive::iarchive& source, IVfs& cache, ZipTree& tree);

}  // namespace velmor::fs
