#include "nuo/common/iarchive.h"

#include <gtest/gtest.h>

#include <memory>

#include "nuo/common/buffer_archive.h"
#include "tests/support/virtualslots.h"

namespace {

using namespace nuo::archive;
using halvern_tests::ExpectOrder;
using halvern_tests::kDestructor;
using halvern_tests::Place;

TEST(Archive, QueriesKeepTheirOrder) {
    ExpectOrder(0,
                {Place(&iarchive::query_reader), Place(&iarchive::query_writer),
                 Place(&iarchive::query_random), Place(&iarchive::query_forward),
                 Place(&iarchive::query_sequence), Place(&iarchive::query_deletor), kDestructor});
}

// `place` came later and stands behind the operations that readers have had always.
TEST(Archive, OperationsOfAReaderKeepTheirOrder) {
    ExpectOrder(0, {Place(&reader::read), Place(&reader::readable), Place(&reader::view_rd),
                    Place(&reader::viewable), kDestructor, Place(&reader::place)});
}

TEST(Archive, OperationsOfAWriterKeepTheirOrder) {
    ExpectOrder(
        0, {Place(&writer::write), Place(&writer::truncate), Place(&writer::writable),
            Place(&writer::sync), Place(&writer::view_wr), Place(&writer::viewable), kDestructor});
}

TEST(Archive, SeekContinuesTheOperationsOfASequence) {
    ExpectOrder(
        0, {Place(&sequence::offset), Place(&sequence::size), kDestructor, Place(&forward::seek)});
    ExpectOrder(4, {Place(&nuo::archive::random::seek)});
}

TEST(Archive, OperationsOfADeletorKeepTheirOrder) {
    ExpectOrder(0, {Place(&nuo::ideletor::destroy), kDestructor});
}

TEST(Archive, OperationsOfAViewKeepTheirOrder) {
    ExpectOrder(
        0, {Place(&view_imp::data), Place(&view_imp::offset), Place(&view_imp::size), kDestructor});
}

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
