#pragma once

#include "velmor/vfs/zip_codec.h"
#include "velmor/vfs/zip_file_header.h"

namespace velmor::fs {

/// The cached file of an entry, with read, write and random access; the first call brings the
/// entry's data into it and takes their size from the codec's allowance. Raises
/// archive_runtime_error when that fails; the next call starts over.
nuo::archive::archive_ptr openCachedFile(file_header& header, ZipCodec& codec);

/// What a caller gets who opened an entry: a cursor over its cached file with the capabilities that
/// `mode` asks for. Every write through it makes the entry dirty, also one that comes after a
/// commit. Null when `mode` asks for neither reading nor writing.
nuo::archive::archive_ptr openEntry(const file_header_ptr& header, nuo::archive::archive_ptr cached,
                                    unsigned mode);

}  // namespace velmor::fs
