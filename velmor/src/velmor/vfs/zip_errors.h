#pragma once

#include "nuo/common/exception.h"

// Why a ZIP could not be read or written; raised as nuo::context_exception of these.

namespace velmor::fs {

NUO_DECLARE_EXCEPTION(bad_end_central_dir_signature);
NUO_DECLARE_EXCEPTION(bad_central_dir_offset_or_size);
NUO_DECLARE_EXCEPTION(bad_central_file_header_signature);
NUO_DECLARE_EXCEPTION(bad_no_enough_head_content);
NUO_DECLARE_EXCEPTION(duplicated_file_name);    // the name follows the position
NUO_DECLARE_EXCEPTION(archive_io_fatal_error);  // the archive gave or took fewer bytes than due
NUO_DECLARE_EXCEPTION(archive_runtime_error);   // an entry's data or name cannot be used

}  // namespace velmor::fs
