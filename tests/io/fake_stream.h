#pragma once

#include <korvanet/platform/core/idatastream.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace halvern_tests {

// A stream of a host over a text, with knobs for the ways in which hosts differ.
class FakeStream : public korvanet::platform::core::IDataStream {
public:
    explicit FakeStream(std::string text = {}) : content(std::move(text)) {}
    ~FakeStream() override {
        if (destroyed != nullptr) *destroyed = true;
    }

    bool IsOpen() const override { return open; }
    void Close() override {
        open = false;
        ++closes;
    }
    bool CanRead() const override { return position < content.size(); }
    std::uint64_t Read(void* buffer, std::uint64_t length) override {
        ++reads;
        const std::uint64_t left = position < content.size() ? content.size() - position : 0;
        if (left == 0 && ++reads_at_end > kMostReadsAtEnd)
            throw std::runtime_error("the end of the stream is read again and again");
        const std::uint64_t count = std::min({length, left, most_at_once});
        std::memcpy(buffer, content.data() + std::min<std::uint64_t>(position, content.size()),
                    count);
        position += count;
        return count + lie_by;
    }
    bool ReadExact(void* buffer, std::uint64_t length) override {
        return Read(buffer, length) == length;
    }
    bool CanWrite() const override { return open; }
    std::uint64_t Write(const void* buffer, std::uint64_t length) override {
        const std::uint64_t count = std::min(length, most_at_once);
        content.resize(std::max<std::uint64_t>(content.size(), position + count));
        std::memcpy(content.data() + position, buffer, count);
        position += count;
        return count;
    }
    bool WriteExact(const void* buffer, std::uint64_t length) override {
        return Write(buffer, length) == length;
    }
    std::uint64_t Seek(std::int64_t offset, korvanet::platform::core::SeekOrigin origin) override {
        const std::uint64_t base[] = {0, position, content.size() + claims_more};
        return position = base[static_cast<int>(origin)] + static_cast<std::uint64_t>(offset);
    }
    std::uint64_t Tell() const override { return position; }
    void Flush() override { ++flushes; }
    void Reserved() override {}
    bool TruncateHere() override {
        if (can_cut) content.resize(position);
        return can_cut;
    }

    // No reader has reason to come back so often; one that never ends fails its test by this.
    static constexpr int kMostReadsAtEnd = 100;

    std::string content;
    std::uint64_t position = 0;
    bool open = true;
    bool can_cut = true;
    std::uint64_t most_at_once = ~std::uint64_t{0};
    std::uint64_t lie_by = 0;       // `Read` answers that much more than it read
    std::uint64_t claims_more = 0;  // the end is told that much too far
    int closes = 0;
    int reads = 0;
    int reads_at_end = 0;
    int flushes = 0;
    bool* destroyed = nullptr;
};

}  // namespace halvern_tests
