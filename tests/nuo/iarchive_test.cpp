#include "nuo/common/iarchive.h"

#include <gtest/gtest.h>

#include <memory>

#include "nuo/common/buffer_archive.h"

namespace {

using namespace nuo::archive;

TEST(Archive, QueryForAMissingCapabilityGivesNull) {
    nuo::buffer<nuo::byte> bytes;
    buffer_in in(bytes);
    EXPECT_EQ(get_writer(in), nullptr);
    EXPECT_EQ(get_deletor(in), nullptr);
    buffer_out out(bytes);
    EXPECT_EQ(get_reader(out), nullptr);
}

TEST(Archive, QueriesGiveInnerPointersOfTheSameObject) {
    nuo::buffer<nuo::byte> bytes;
    buffer_io both(bytes);
    EXPECT_EQ(get_reader(both), static_cast<reader*>(&both));
    EXPECT_EQ(get_writer(both), static_cast<writer*>(&both));
    EXPECT_EQ(get_random(both), static_cast<nuo::archive::random*>(&both));
    EXPECT_EQ(get_forward(both), static_cast<forward*>(&both));
    EXPECT_EQ(get_sequence(both), static_cast<sequence*>(&both));
}

TEST(Archive, QueriesOfNullGiveNull) {
    iarchive* none = nullptr;
    EXPECT_EQ(get_reader(none), nullptr);
    EXPECT_EQ(get_writer(none), nullptr);
    EXPECT_EQ(get_random(none), nullptr);
}

class Endable : public buffer_in, public nuo::ideletor {
public:
    Endable(const nuo::buffer<nuo::byte>& bytes, int& ended) : buffer_in(bytes), ended_(ended) {}
    void destroy() override { ++ended_; }

private:
    int& ended_;
};

TEST(Archive, DerivedClassesMayAddCapabilities) {
    nuo::buffer<nuo::byte> bytes;
    int ended = 0;
    Endable endable(bytes, ended);
    iarchive& archive = endable;
    EXPECT_EQ(get_deletor(archive), static_cast<nuo::ideletor*>(&endable));
    EXPECT_NE(get_reader(archive), nullptr);
}

TEST(ArchivePtr, EndsTheArchiveThroughItsDeletor) {
    nuo::buffer<nuo::byte> bytes;
    int ended = 0;
    Endable endable(bytes, ended);
    { const archive_ptr owner(&endable); }
    EXPECT_EQ(ended, 1);
    { const archive_ptr none; }
}

TEST(ArchivePtr, LeavesAnArchiveThatCannotEndItself) {
    nuo::buffer<nuo::byte> bytes;
    buffer_in in(bytes);
    { const archive_ptr owner(&in); }
    EXPECT_EQ(in.size(), 0u);
}

class Watched : public mem_write_archive {
public:
    explicit Watched(std::shared_ptr<int> token) : token_(std::move(token)) {}

private:
    std::shared_ptr<int> token_;
};

TEST(ArchivePtr, DefaultDeletorDestroysTheWholeObject) {
    const auto token = std::make_shared<int>();
    archive_ptr owner = make_archive<Watched>(token);
    EXPECT_EQ(token.use_count(), 2);
    EXPECT_NE(get_deletor(*owner), nullptr);
    owner.reset();
    EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
