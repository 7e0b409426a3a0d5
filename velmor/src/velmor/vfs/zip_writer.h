#pragma once

#include <utility>
#include <vector>

#include "velmor/vfs/zip_codec.h"
#include "velmor/vfs/zip_file_header.h"

namespace velmor::fs {

/// Writes a ZIP to an archive. Order of calls: writeEntry*, writeDirectory. Raises
/// archive_io_fatal_error when a source ends early, archive_runtime_error when a changed entry's
/// file cannot be had or deflated, and the checked conversion's failure for an offset, a size or a
/// name that the form cannot tell; what `target` raises passes through.
///
/// The entries' headers stay as they are until `adopt`, so that a failed write leaves them
/// matching the archive that they were read from.
class ZipWriter {
public:
    ZipWriter(nuo::archive::iarchive& target, ZipCodec& codec);

    void writeEntry(const file_header_ptr& header);
    void writeDirectory();

    /// Makes the entries what was written, with their data in `source`, and clean.
    void adopt(nuo::archive::iarchive& source);

private:
    struct Written {
        file_header_ptr header;
        file_header fresh;
    };

    void writeHead(const file_header& header);
    void writeTouched(file_header& fresh);
    void writeUntouched(file_header& fresh);
    void rewriteSizes(const file_header& fresh);
    void flush();

    nuo::archive::writer& out_;
    nuo::archive::random& position_;
    ZipCodec& codec_;
    std::uint16_t time_;
    std::uint16_t date_;
    nuo::buffer<nuo::byte> bytes_;  // headers on their way out
    std::vector<Written> written_;
};

}  // namespace velmor::fs
