#include "inspect/zipdata.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/zip_codec.h"
#include "velmor/vfs/zip_format.h"

namespace halvern::inspect {
namespace {

namespace format = velmor::fs::zip_format;

constexpr std::uint16_t kEncrypted = 0x0001;

// More bytes came than the headers tell.
struct TooMuch {};

// Counts and sums what is inflated, and keeps none of it.
class Counter final : public nuo::archive::writer {
public:
    explicit Counter(std::uint64_t most) : most_(most) {}

    const nuo::byte* write(nuo::archive::const_byte_range range) override {
        size_ += range.size();
        if (size_ > most_) throw TooMuch();
        crc_ = velmor::fs::zipChecksum(crc_, range);
        return range.last;
    }
    std::uint64_t truncate(std::uint64_t) override { return size_; }
    bool writable() override { return true; }
    void sync() override {}
    nuo::archive::view_ptr view_wr(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }

    std::uint64_t Size() const { return size_; }
    std::uint32_t Crc() const { return crc_; }

private:
    std::uint64_t most_;
    std::uint64_t size_ = 0;
    std::uint32_t crc_ = 0;
};

class DataCheck {
public:
    DataCheck(nuo::archive::iarchive& file, const ZipListing& listing, Findings& findings)
        : file_(file), size_(file.query_random()->size()), listing_(listing), findings_(findings) {}

    std::set<std::string> Run() {
        MarkOverlaps();
        for (const ZipEntry& entry : listing_.entries)
            if (!overlapping_.contains(&entry) && !(CheckHead(entry) && CheckData(entry)))
                unreadable_.insert(PlainName(entry.name));
        return std::move(unreadable_);
    }

private:
    void Add(const ZipEntry& entry, const char* rule, std::uint64_t offset, std::string what) {
        findings_.Add({rule, entry.name, AtOffset(offset), std::move(what)});
    }

    // Entries that share bytes are how a small file inflates to a huge one; they are not read.
    void MarkOverlaps() {
        std::vector<const ZipEntry*> order;
        for (const ZipEntry& entry : listing_.entries)
            order.push_back(&entry);
        std::stable_sort(order.begin(), order.end(), [](const ZipEntry* a, const ZipEntry* b) {
            return a->header_offset < b->header_offset;
        });
        std::uint64_t taken = 0;
        for (const ZipEntry* entry : order) {
            const std::uint64_t end = entry->data_offset + entry->packed_size;
            if (entry->header_offset < taken)
                Add(*entry, "zip.overlap", entry->header_offset,
                    "the entry lies over the one before it");
            else if (end > size_)
                Add(*entry, "zip.data", entry->header_offset,
                    "the entry reaches past the end of the file");
            if (entry->header_offset >= taken && end <= size_) {
                taken = end;
                continue;
            }
            // What such an entry claims to take says nothing of those behind it.
            overlapping_.insert(entry);
            unreadable_.insert(PlainName(entry->name));
        }
    }

    // The first difference that readers of the one or the other header would notice.
    static const char* Difference(const nuo::byte* head, const ZipEntry& entry) {
        if ((format::get16(head + 6) ^ entry.flags) & (kEncrypted | format::flag_descriptor))
            return "flags";
        if (format::get16(head + 8) != entry.method) return "method";
        // With a data descriptor the three stand behind the data, and here may be zeros.
        const bool later = (entry.flags & format::flag_descriptor) != 0;
        const auto differs = [&](std::uint32_t at, std::uint32_t wanted) {
            const std::uint32_t found = format::get32(head + at);
            return found != wanted && !(later && found == 0);
        };
        if (differs(14, entry.crc)) return "checksum";
        if (differs(18, entry.packed_size)) return "compressed size";
        if (differs(22, entry.size)) return "size";
        return nullptr;
    }

    // False when the data cannot be found by it.
    bool CheckHead(const ZipEntry& entry) {
        std::vector<nuo::byte> head(format::local_size + entry.name.size());
        file_.query_random()->seek(entry.header_offset);
        const nuo::archive::byte_range range(head.data(), head.size());
        if (nuo::archive::read_some(*file_.query_reader(), range) != range.last ||
            format::get32(head.data()) != format::local_signature) {
            Add(entry, "zip.local", entry.header_offset, "there is no local header");
            return false;
        }
        const std::uint64_t data = entry.header_offset + format::local_size +
                                   format::get16(head.data() + 26) +
                                   format::get16(head.data() + 28);
        if (format::get16(head.data() + 26) != entry.name.size() ||
            std::memcmp(head.data() + format::local_size, entry.name.data(), entry.name.size()) !=
                0) {
            Add(entry, "zip.local", entry.header_offset + 26,
                "the local header has another name than the directory");
            return data == entry.data_offset;
        }
        if (data != entry.data_offset) {
            Add(entry, "zip.local", entry.header_offset + 28,
                "by the local header the data begins at offset " + std::to_string(data) +
                    ", by the directory at " + std::to_string(entry.data_offset));
            return false;
        }
        if (const char* field = Difference(head.data(), entry))
            Add(entry, "zip.local", entry.header_offset,
                std::string("the local header has another ") + field + " than the directory");
        return true;
    }

    bool CheckData(const ZipEntry& entry) {
        if ((entry.flags & kEncrypted) != 0 ||
            (entry.method != format::method_stored && entry.method != format::method_deflate)) {
            Add(entry, "zip.method", entry.central_offset + 8,
                (entry.flags & kEncrypted) != 0 ? "the entry is encrypted"
                                                : "the entry is compressed by the unknown method " +
                                                      std::to_string(entry.method));
            return false;
        }
        Counter counter(entry.size);
        if (!Unpack(entry, counter)) return false;
        if (counter.Size() != entry.size) {
            Add(entry, "zip.data", entry.data_offset,
                "the entry has " + std::to_string(counter.Size()) +
                    " bytes, and its header tells of " + std::to_string(entry.size));
            return false;
        }
        if (counter.Crc() != entry.crc)
            Add(entry, "zip.crc", entry.data_offset,
                "the checksum of the data is not that of its header");
        return true;
    }

    bool Unpack(const ZipEntry& entry, Counter& counter) {
        file_.query_random()->seek(entry.data_offset);
        try {
            if (entry.method == format::method_stored)
                codec_.copy(*file_.query_reader(), counter, entry.packed_size);
            else if (entry.packed_size != 0)
                codec_.inflateTo(*file_.query_reader(), entry.packed_size, counter);
            return true;
        } catch (const TooMuch&) {
            Add(entry, "zip.data", entry.data_offset,
                "the entry holds more than the " + std::to_string(entry.size) +
                    " bytes that its header tells of");
        } catch (const nuo::exception&) {
            Add(entry, "zip.data", entry.data_offset, "the compressed data is damaged");
        }
        return false;
    }

    nuo::archive::iarchive& file_;
    std::uint64_t size_;
    const ZipListing& listing_;
    Findings& findings_;
    velmor::fs::ZipCodec codec_;
    std::set<const ZipEntry*> overlapping_;
    std::set<std::string> unreadable_;
};

}  // namespace

std::set<std::string> CheckZipData(nuo::archive::iarchive& file, const ZipListing& listing,
                                   Findings& findings) {
    return DataCheck(file, listing, findings).Run();
}

}  // namespace halvern::inspect
