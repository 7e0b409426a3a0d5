#include "nuo/contract/archive_contract.h"

#include "assets/serialization/io/archiveadaptor.h"
#include "io/fake_stream.h"

namespace {

using halvern_tests::FakeStream;
using korvanet::platform::assets::OwnReadStreamArchive;
using korvanet::platform::assets::OwnReadWriteStreamArchive;
using korvanet::platform::assets::ReadStreamArchive;
using korvanet::platform::assets::ReadWriteStreamArchive;

template <class Form>
class StreamRig : public Rig {
public:
    explicit StreamRig(const std::string& start) : stream_(start), archive_(stream_) {}
    iarchive& Archive() override { return archive_; }
    std::string Content() override { return stream_.content; }

private:
    FakeStream stream_;
    Form archive_;
};

template <class Form>
class OwnedStreamRig : public Rig {
public:
    explicit OwnedStreamRig(const std::string& start) {
        auto stream = std::make_unique<FakeStream>(start);
        stream_ = stream.get();
        owner_ = make_archive<Form>(std::move(stream));
    }
    iarchive& Archive() override { return *owner_; }
    std::string Content() override { return stream_->content; }

private:
    FakeStream* stream_;
    archive_ptr owner_;
};

// Archives over write streams are not here: they begin with size 0 over whatever the stream holds,
// and cannot be cut, so that most cases have nothing to start from.
const Backend kBackends[] = {
    {"read_stream",
     Make<StreamRig<ReadStreamArchive>>,
     {R::kReadOnly, R::kSeekStopsAtTheEnd, R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"read_write_stream",
     Make<StreamRig<ReadWriteStreamArchive>>,
     {R::kMemoryHasNoViews, R::kOwnedByTheCaller}},
    {"owned_read_stream",
     Make<OwnedStreamRig<OwnReadStreamArchive>>,
     {R::kReadOnly, R::kSeekStopsAtTheEnd, R::kMemoryHasNoViews}},
    {"owned_read_write_stream",
     Make<OwnedStreamRig<OwnReadWriteStreamArchive>>,
     {R::kMemoryHasNoViews}},
};

INSTANTIATE_TEST_SUITE_P(Every, ArchiveContract, ::testing::ValuesIn(kBackends),
                         [](const auto& backend) { return std::string(backend.param.name); });

}  // namespace
