#include "velmor/vfs/zip_entries.h"

#include "nuo/common/multiplex.h"
#include "velmor/vfs/vfs_functions.h"
#include "velmor/vfs/zip_errors.h"
#include "velmor/vfs/zip_format.h"

namespace velmor::fs {

namespace {

using nuo::archive::archive_ptr;
using nuo::archive::iarchive;

void readSourceData(const file_header& header, ZipCodec& codec, nuo::archive::writer& target) {
    header.source->query_random()->seek(header.dataOffset);
    nuo::archive::reader& source = *header.source->query_reader();
    if (header.method != zip_format::method_stored)
        return codec.inflateTo(source, header.compressedSize, target);
    const std::uint64_t copied = codec.copy(source, target, header.compressedSize);
    if (copied != header.compressedSize) NUO_RAISE(archive_runtime_error, "data lost.");
    codec.spend(copied);
}

archive_ptr fetch(file_header& header, ZipCodec& codec) {
    archive_ptr cached = recursiveCreate(*header.cache, header.name, mode_all, open_or_create);
    if (cached == nullptr) NUO_RAISE(archive_runtime_error, "failed to create cached file.");
    // A cache that served another object may hold a file of this name.
    cached->query_writer()->truncate(0);
    const std::uint64_t allowance = codec.allowance();
    try {
        if (header.hasSourceData()) readSourceData(header, codec, *cached->query_writer());
    } catch (...) {
        // Nothing of it is kept, so nothing of the allowance is used up.
        cached.reset();
        header.cache->remove(header.name);
        codec.setAllowance(allowance);
        throw;
    }
    cached->query_random()->seek(0);
    header.fetched = true;
    return cached;
}

// A cursor whose writes make the entry dirty.
template <class Form>
class EntryWriter : public nuo::archive::multiplex_owner<Form> {
    using base = nuo::archive::multiplex_owner<Form>;

public:
    EntryWriter(std::shared_ptr<iarchive> cached, file_header_ptr header)
        : base(std::move(cached)), header_(std::move(header)) {}

    const nuo::byte* write(nuo::archive::const_byte_range range) override {
        header_->touch();
        return base::write(range);
    }
    std::uint64_t truncate(std::uint64_t size) override {
        header_->touch();
        return base::truncate(size);
    }
    nuo::archive::view_ptr view_wr(nuo::archive::offset_range range) override {
        header_->touch();
        return base::view_wr(range);
    }

private:
    file_header_ptr header_;
};

}  // namespace

archive_ptr openCachedFile(file_header& header, ZipCodec& codec) {
    if (!header.fetched) return fetch(header, codec);
    archive_ptr cached = header.cache->create(header.name, mode_all, open_existing);
    if (cached == nullptr) NUO_RAISE(archive_runtime_error, "failed to open cached file.");
    return cached;
}

archive_ptr openEntry(const file_header_ptr& header, archive_ptr cached, unsigned mode) {
    using namespace nuo::archive;
    std::shared_ptr<iarchive> shared(std::move(cached));
    switch (mode & (mode_read | mode_write)) {
        case mode_read | mode_write:
            return make_archive<EntryWriter<multiplex_read_write_archive>>(std::move(shared),
                                                                           header);
        case mode_read:
            return make_multiplex<multiplex_read_archive>(std::move(shared));
        case mode_write:
            return make_archive<EntryWriter<multiplex_write_archive>>(std::move(shared), header);
        default:
            return {};
    }
}

}  // namespace velmor::fs
