#pragma once

// One suite over every archive. A test program includes it in one source file, adds
// nuo/temp_folder.cpp to its sources, and lists its backends. A backend is excused from a case only
// by a reason in that list; where it is excused, the case checks that the reason holds.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "nuo/common/archive/string.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "nuo/common/multiplex.h"
#include "nuo/temp_folder.h"

// For the one source file of a test program that lists its backends.
namespace {

using namespace nuo::archive;
using nuo_tests::Bytes;
using nuo_tests::ReadFile;
using nuo_tests::TempFolder;
using nuo_tests::Text;
using nuo_tests::WriteFile;

enum class Reason {
    kReadOnly,
    kWriteOnly,
    kSeekStopsAtTheEnd,
    kMemoryHasNoViews,
    kOwnedByTheCaller,
};

/// An archive over some first bytes, and a way to see the bytes behind its back.
class Rig {
public:
    virtual ~Rig() = default;
    virtual iarchive& Archive() = 0;
    virtual std::string Content() = 0;
};

template <class T>
class BufferRig : public Rig {
public:
    explicit BufferRig(const std::string& start) : bytes_(Bytes(start)), archive_(bytes_) {}
    iarchive& Archive() override { return archive_; }
    std::string Content() override { return Text(bytes_); }

private:
    nuo::buffer<nuo::byte> bytes_;
    T archive_;
};

template <class T>
class MemoryRig : public Rig {
public:
    explicit MemoryRig(const std::string& start) {
        auto* made = new nuo::default_deletorT<T>();
        memory_ = made;
        owner_.reset(made);
        memory_->get_buffer() = Bytes(start);
    }
    iarchive& Archive() override { return *owner_; }
    std::string Content() override { return Text(memory_->get_buffer()); }

private:
    T* memory_;
    archive_ptr owner_;
};

template <class T>
class FileRig : public Rig {
public:
    explicit FileRig(const std::string& start) : path_(folder_.Path("file")) {
        WriteFile(path_, start);
        owner_ = make_archive<T>(nuo::string_ref(path_.c_str()));
    }
    iarchive& Archive() override { return *owner_; }
    std::string Content() override { return ReadFile(path_); }

private:
    TempFolder folder_;
    std::string path_;
    archive_ptr owner_;
};

/// A second cursor stands somewhere else in the same archive and must not matter.
template <class Form, class Below>
class MultiplexRig : public Rig {
public:
    explicit MultiplexRig(const std::string& start) : below_(start), archive_(below_.Archive()) {
        get_random(below_.Archive())->seek(1);
    }
    iarchive& Archive() override { return archive_; }
    std::string Content() override { return below_.Content(); }

private:
    Below below_;
    Form archive_;
};

template <class Form>
class OwnerRig : public Rig {
public:
    explicit OwnerRig(const std::string& start) : path_(folder_.Path("file")) {
        WriteFile(path_, start);
        owner_ = make_multiplex<Form>(
            make_archive<file_read_write_archive>(nuo::string_ref(path_.c_str())));
    }
    iarchive& Archive() override { return *owner_; }
    std::string Content() override { return ReadFile(path_); }

private:
    TempFolder folder_;
    std::string path_;
    archive_ptr owner_;
};

struct Backend {
    const char* name;
    std::function<std::unique_ptr<Rig>(const std::string&)> make;
    std::vector<Reason> excused;

    bool IsExcused(Reason reason) const {
        return std::find(excused.begin(), excused.end(), reason) != excused.end();
    }
};

template <class T>
std::unique_ptr<Rig> Make(const std::string& start) {
    return std::make_unique<T>(start);
}

void PrintTo(const Backend& backend, std::ostream* out) {
    *out << backend.name;
}

class ArchiveContract : public ::testing::TestWithParam<Backend> {
protected:
    void Start(const std::string& bytes) {
        rig_ = GetParam().make(bytes);
        in_ = get_reader(rig_->Archive());
        out_ = get_writer(rig_->Archive());
        place_ = get_random(rig_->Archive());
        ASSERT_NE(place_, nullptr);
    }
    /// False, after a look that it is so, for a backend without the reader.
    bool Reads() const {
        if (!GetParam().IsExcused(Reason::kWriteOnly)) return true;
        EXPECT_EQ(in_, nullptr);
        return false;
    }
    bool Writes() const {
        if (!GetParam().IsExcused(Reason::kReadOnly)) return true;
        EXPECT_EQ(out_, nullptr);
        return false;
    }
    std::string Read(std::size_t count) const {
        std::string text(count, '\0');
        auto* const first = reinterpret_cast<nuo::byte*>(text.data());
        text.resize(static_cast<std::size_t>(in_->read({first, count}) - first));
        return text;
    }
    void Write(const std::string& text) const {
        const auto bytes = Bytes(text);
        ASSERT_EQ(out_->write({bytes.begin(), bytes.end()}), bytes.end());
    }

    std::unique_ptr<Rig> rig_;
    reader* in_ = nullptr;
    writer* out_ = nullptr;
    nuo::archive::random* place_ = nullptr;
};

TEST_P(ArchiveContract, StartsAtZeroWithTheSizeOfItsBytes) {
    Start("abcdef");
    EXPECT_EQ(place_->offset(), 0u);
    EXPECT_EQ(place_->size(), 6u);
    EXPECT_EQ(rig_->Content(), "abcdef");
}

TEST_P(ArchiveContract, QueriesAgreeWithCasts) {
    Start("");
    iarchive& archive = rig_->Archive();
    EXPECT_EQ(archive.query_reader(), dynamic_cast<reader*>(&archive));
    EXPECT_EQ(archive.query_writer(), dynamic_cast<writer*>(&archive));
    EXPECT_EQ(archive.query_random(), dynamic_cast<nuo::archive::random*>(&archive));
    EXPECT_EQ(archive.query_forward(), archive.query_random());
    EXPECT_EQ(archive.query_sequence(), archive.query_random());
    EXPECT_EQ(archive.query_deletor() == nullptr, GetParam().IsExcused(Reason::kOwnedByTheCaller));
    EXPECT_TRUE(in_ != nullptr || out_ != nullptr);
}

TEST_P(ArchiveContract, ReadsInPiecesToTheEnd) {
    Start("abcdef");
    if (!Reads()) return;
    EXPECT_TRUE(in_->readable());
    EXPECT_EQ(Read(4), "abcd");
    EXPECT_EQ(place_->offset(), 4u);
    EXPECT_EQ(Read(4), "ef");
    EXPECT_FALSE(in_->readable());
    EXPECT_EQ(Read(4), "");
    EXPECT_EQ(place_->offset(), 6u);
}

TEST_P(ArchiveContract, EmptyRangesReadAndWriteNothing) {
    Start("abc");
    if (Reads()) {
        EXPECT_EQ(Read(0), "");
    }
    if (Writes()) {
        Write("");
    }
    EXPECT_EQ(place_->offset(), 0u);
    EXPECT_EQ(rig_->Content(), "abc");
}

TEST_P(ArchiveContract, EmptyArchiveHasNothingToRead) {
    Start("");
    EXPECT_EQ(place_->size(), 0u);
    if (!Reads()) return;
    EXPECT_FALSE(in_->readable());
    EXPECT_EQ(Read(4), "");
}

TEST_P(ArchiveContract, SeeksWithinTheBytes) {
    Start("abcdef");
    EXPECT_EQ(place_->seek(4), 4u);
    EXPECT_EQ(place_->offset(), 4u);
    if (!Reads()) return;
    EXPECT_EQ(Read(1), "e");
    place_->seek(0);
    EXPECT_EQ(Read(1), "a");
}

TEST_P(ArchiveContract, SeeksBehindTheEnd) {
    Start("abc");
    const std::uint64_t expected = GetParam().IsExcused(Reason::kSeekStopsAtTheEnd) ? 3 : 10;
    EXPECT_EQ(place_->seek(10), expected);
    EXPECT_EQ(place_->offset(), expected);
    EXPECT_EQ(place_->size(), 3u);
    if (!Reads()) return;
    EXPECT_FALSE(in_->readable());
    EXPECT_EQ(Read(4), "");
}

TEST_P(ArchiveContract, WriteOverwritesAndAppends) {
    Start("abcd");
    if (!Writes()) return;
    EXPECT_TRUE(out_->writable());
    place_->seek(2);
    Write("XYZ");
    EXPECT_EQ(place_->offset(), 5u);
    EXPECT_EQ(place_->size(), 5u);
    out_->sync();
    EXPECT_EQ(rig_->Content(), "abXYZ");
}

TEST_P(ArchiveContract, WriteInsideKeepsTheSize) {
    Start("abcdef");
    if (!Writes()) return;
    place_->seek(1);
    Write("XY");
    EXPECT_EQ(place_->offset(), 3u);
    EXPECT_EQ(place_->size(), 6u);
    EXPECT_EQ(rig_->Content(), "aXYdef");
}

TEST_P(ArchiveContract, WriteBehindTheEndFillsUp) {
    Start("ab");
    if (!Writes()) return;
    place_->seek(4);
    Write("x");
    EXPECT_EQ(place_->size(), 5u);
    EXPECT_EQ(rig_->Content(), std::string("ab\0\0x", 5));
}

TEST_P(ArchiveContract, TruncateCutsAndTakesThePositionBack) {
    Start("abcdef");
    if (!Writes()) return;
    place_->seek(5);
    EXPECT_EQ(out_->truncate(3), 3u);
    EXPECT_EQ(place_->offset(), 3u);
    EXPECT_EQ(rig_->Content(), "abc");
    EXPECT_EQ(out_->truncate(0), 0u);
    EXPECT_EQ(place_->offset(), 0u);
    EXPECT_EQ(rig_->Content(), "");
}

TEST_P(ArchiveContract, TruncateExtendsAndKeepsThePosition) {
    Start("ab");
    if (!Writes()) return;
    place_->seek(1);
    EXPECT_EQ(out_->truncate(4), 4u);
    EXPECT_EQ(place_->offset(), 1u);
    EXPECT_EQ(place_->size(), 4u);
    EXPECT_EQ(rig_->Content(), std::string("ab\0\0", 4));
}

TEST_P(ArchiveContract, ViewsShowAndChangeTheBytes) {
    Start("abcdef");
    const bool views = !GetParam().IsExcused(Reason::kMemoryHasNoViews);
    if (Reads()) {
        EXPECT_EQ(in_->viewable(), views);
        const view_ptr view = in_->view_rd({1, 3});
        ASSERT_EQ(view != nullptr, views);
        if (views) {
            EXPECT_EQ(std::string(view->data().first, view->data().last), "bc");
        }
    }
    if (Writes()) {
        EXPECT_EQ(out_->viewable(), views);
        const view_ptr view = out_->view_wr({5, 8});
        ASSERT_EQ(view != nullptr, views);
        if (!views) return;
        view->data().first[2] = 'z';
        EXPECT_EQ(place_->size(), 8u);
        EXPECT_EQ(rig_->Content(), std::string("abcdef\0z", 8));
    }
    EXPECT_EQ(place_->offset(), 0u);
}

TEST_P(ArchiveContract, ShortPrimitiveRaisesAndIsConsumed) {
    Start("abc");
    if (!Reads()) return;
    std::uint32_t value;
    EXPECT_THROW(*in_ >> value, read_failed);
    EXPECT_EQ(place_->offset(), 3u);
}

TEST_P(ArchiveContract, StringLongerThanTheRestRaises) {
    Start(std::string("\5\0\0\0abc", 7));
    if (!Reads()) return;
    nuo::string value("old");
    EXPECT_THROW(*in_ >> value, read_failed);
    EXPECT_TRUE(value.empty());
    EXPECT_EQ(place_->offset(), 4u);
}

TEST_P(ArchiveContract, StoredValuesReadBack) {
    Start(std::string("\3\0\0\0abc\7\0\0\0", 11));
    if (Reads()) {
        nuo::string text;
        std::uint32_t number = 0;
        *in_ >> text >> number;
        EXPECT_EQ(text, "abc");
        EXPECT_EQ(number, 7u);
    }
    if (!Writes()) return;
    place_->seek(0);
    *out_ << nuo::string("xyz") << std::uint32_t{9};
    EXPECT_EQ(rig_->Content(), std::string("\3\0\0\0xyz\x09\0\0\0", 11));
}

TEST_P(ArchiveContract, LargeContentPassesThrough) {
    std::string large(300000, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<char>(i * 31 % 251);
    Start(large);
    if (Reads()) {
        EXPECT_EQ(Read(large.size()), large);
    }
    if (!Writes()) return;
    place_->seek(large.size());
    Write(large);
    EXPECT_EQ(rig_->Content(), large + large);
}

using R = Reason;

}  // namespace
