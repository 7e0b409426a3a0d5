#include "assets/library/datastore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nuo/common/buffer_archive.h"

namespace {

using namespace korvanet::platform::assets;
using namespace nuo::archive;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t kNone = 0xFFFFFFFF;

std::string Number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string Header(std::uint32_t size, std::uint32_t first, std::uint32_t last,
                   std::uint32_t version) {
    return Number(size, 4) + Number(first, 4) + Number(last, 4) + Number(version, 4);
}

std::string Block(std::uint32_t next, std::uint32_t used, std::uint32_t head, char fill = '\0') {
    std::string text = Number(next, 4) + Number(used, 2) + Number(head, 2);
    text.append(128, fill);
    return text;
}

nuo::buffer<nuo::byte> Bytes(const std::string& text) {
    const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
    return {first, first + text.size()};
}

// A store over bytes in memory that can be looked at.
class Store {
public:
    explicit Store(const std::string& bytes = "") {
        auto* made = new nuo::default_deletorT<mem_read_write_archive>(Bytes(bytes));
        memory_ = made;
        store_ = std::make_unique<DataStore>(archive_ptr(made));
    }
    DataStore* operator->() { return store_.get(); }
    std::string Content() const {
        const auto& bytes = memory_->get_buffer();
        return {bytes.begin(), bytes.end()};
    }
    std::uint32_t Add(std::size_t size, char fill) {
        DataRecord record = store_->Allocate(static_cast<std::uint32_t>(size));
        const std::string text(size, fill);
        record.Write({text.data(), text.size()});
        return record.Id();
    }
    std::string Read(std::uint32_t id) {
        DataRecord record = store_->Open(id);
        std::string text(record.Size(), '\0');
        auto* first = reinterpret_cast<nuo::byte*>(text.data());
        EXPECT_EQ(record.Read({first, text.size()}), first + text.size());
        return text;
    }

private:
    mem_read_write_archive* memory_;
    std::unique_ptr<DataStore> store_;
};

// The text behind the position of the bad_datastore that `body` raises.
template <class Body>
std::string Failure(Body body) {
    try {
        body();
    } catch (const nuo::context_exception<bad_datastore>& failure) {
        const std::string message = failure.what();
        return message.substr(message.find(')') + 1);
    }
    return "no failure";
}

std::string OpenFailure(const std::string& bytes) {
    return Failure([&] { Store store(bytes); });
}

const char* const kBadFree = "correpted data: incorrect free block id";
const char* const kBadRecord = "incorrect record id. may data corrupted or internal error";

TEST(DataStore, EmptyArchiveTakesSixteenBytesAndItsHeaderWithTheFirstFlush) {
    Store store;
    EXPECT_EQ(store.Content().size(), 16u);
    EXPECT_EQ(store->BlockCount(), 0u);
    store->Flush();
    EXPECT_EQ(store.Content(), Header(136, kNone, kNone, 0));
}

TEST(DataStore, ReadsARecordWholeAndAsOftenAsItsOwnReaderLikes) {
    Store store;
    const std::uint32_t id = store.Add(130, 'b');
    const int reader = 0;
    for (int time = 0; time < 20000; ++time)
        ASSERT_EQ(store->ReadAll(id, &reader).size(), 130u);
    const auto bytes = store->ReadAll(id, &reader);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), std::string(130, 'b'));
}

// The allowance is 16 times the two blocks and a mebibyte of others.
TEST(DataStore, WhatManyReadersShareIsLimitedAndTheFirstOneReadsOn) {
    Store store;
    const std::uint32_t id = store.Add(130, 'b');
    const std::vector<char> readers(2 + 16 + 4096);
    for (std::size_t reader = 0; reader + 1 < readers.size(); ++reader)
        ASSERT_EQ(store->ReadAll(id, &readers[reader]).size(), 130u) << reader;
    EXPECT_EQ(Failure([&] { store->ReadAll(id, &readers.back()); }),
              "too many records share blocks");
    EXPECT_EQ(store->ReadAll(id, &readers[0]).size(), 130u);
}

TEST(DataStore, WritesTheseBytes) {
    Store store;
    store.Add(3, 'a');
    store.Add(130, 'b');
    store->Flush();
    std::string second = Block(kNone, 2, 0);
    second.replace(8, 2, "bb");
    std::string first = Block(kNone, 3, 1);
    first.replace(8, 3, "aaa");
    EXPECT_EQ(store.Content(),
              Header(136, kNone, kNone, 0) + first + Block(2, 128, 1, 'b') + second);
}

TEST(DataStore, RecordOf128BytesTakesOneBlockAndOf129Two) {
    Store store;
    store.Add(128, 'a');
    EXPECT_EQ(store->BlockCount(), 1u);
    store.Add(129, 'b');
    EXPECT_EQ(store->BlockCount(), 3u);
    const std::string content = store.Content();
    EXPECT_EQ(content.substr(16, 8), Number(kNone, 4) + Number(128, 2) + Number(1, 2));
    EXPECT_EQ(content.substr(16 + 136, 8), Number(2, 4) + Number(128, 2) + Number(1, 2));
    EXPECT_EQ(content.substr(16 + 272, 8), Number(kNone, 4) + Number(1, 2) + Number(0, 2));
}

TEST(DataStore, ReadsBackWhatWasWrittenAtEverySize) {
    Store store;
    std::vector<std::pair<std::uint32_t, std::size_t>> records;
    for (const std::size_t size : {1, 127, 128, 129, 256, 257, 1024, 8192, 8193, 20000})
        records.emplace_back(store.Add(size, static_cast<char>('a' + records.size())), size);
    store->Flush();
    Store again(store.Content());
    for (std::size_t i = 0; i < records.size(); ++i)
        EXPECT_EQ(again.Read(records[i].first),
                  std::string(records[i].second, static_cast<char>('a' + i)));
}

TEST(DataStore, AllocatingKeepsTheDataOfReusedBlocks) {
    Store store(Header(136, 0, 0, 0) + Block(kNone, 0, 0, 'x'));
    store->Allocate(5);
    EXPECT_EQ(store.Content().substr(16), Block(kNone, 5, 1, 'x'));
}

TEST(DataStore, RunOfExactlyTheWantedBlocksVanishes) {
    Store store;
    const auto id = store.Add(300, 'a');
    store.Add(1, 'b');
    store->Free(id);
    EXPECT_EQ(store->Allocate(300).Id(), id);
    EXPECT_THAT(store->FreeBlocks().Runs(), IsEmpty());
    EXPECT_EQ(store->BlockCount(), 4u);
}

TEST(DataStore, FirstFitLeavesTheRest) {
    Store store;
    const auto two = store.Add(200, 'a');
    store.Add(1, 'b');
    const auto five = store.Add(600, 'c');
    store.Add(1, 'd');
    store->Free(two);
    store->Free(five);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 2}, BlockRun{3, 8}));
    EXPECT_EQ(store->Allocate(300).Id(), 3u);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 2}, BlockRun{6, 8}));
}

TEST(DataStore, FreeBlocksAtTheEndAreNotExtended) {
    Store store;
    store->Free(store.Add(200, 'a'));
    EXPECT_EQ(store->Allocate(300).Id(), 2u);
    EXPECT_EQ(store->BlockCount(), 5u);
}

TEST(DataStore, AdjacentRecordsFreeToOneRunThatSurvivesAFlush) {
    Store store;
    const auto first = store.Add(200, 'a');
    const auto second = store.Add(200, 'b');
    store.Add(1, 'c');
    store->Free(first);
    store->Free(second);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 4}));
    store->Flush();
    Store again(store.Content());
    EXPECT_THAT(again->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 4}));
}

TEST(DataStore, FlushWritesTheFreeChainInAscendingOrder) {
    Store store;
    const auto first = store.Add(129, 'a');
    store.Add(1, 'b');
    const auto third = store.Add(1, 'c');
    store->Free(third);
    store->Free(first);
    store->Flush();
    std::string kept = Block(kNone, 1, 1);
    kept[8] = 'b';
    std::string second = Block(3, 0, 0);
    second[8] = 'a';
    std::string last = Block(kNone, 0, 0);
    last[8] = 'c';
    EXPECT_EQ(store.Content(), Header(136, 0, 3, 0) + Block(1, 0, 0, 'a') + second + kept + last);
}

TEST(DataStore, FreeChainLeadsFromEachRunToTheFirstBlockOfTheNext) {
    Store store;
    const auto single = store.Add(1, 'a');
    store.Add(1, 'b');
    const auto three = store.Add(300, 'c');
    store.Add(1, 'd');
    store->Free(single);
    store->Free(three);
    store->Flush();
    const std::string content = store.Content();
    EXPECT_EQ(content.substr(0, 16), Header(136, 0, 4, 0));
    EXPECT_EQ(content.substr(16, 8), Block(2, 0, 0).substr(0, 8));
    EXPECT_EQ(content.substr(16 + 2 * 136, 8), Block(3, 0, 0).substr(0, 8));
    EXPECT_EQ(content.substr(16 + 4 * 136, 8), Block(kNone, 0, 0).substr(0, 8));
    Store again(content);
    EXPECT_THAT(again->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 1}, BlockRun{2, 5}));
}

TEST(DataStore, OneThatGoesWithoutAFlushLeavesTheFreeChainThatItFound) {
    Store made;
    const auto first = made.Add(129, 'a');
    const auto second = made.Add(1, 'b');
    made->Free(first);
    made->Flush();
    const std::string before = made.Content();
    mem_read_write_archive memory(Bytes(before));
    {
        DataStore store{archive_ptr(&memory)};
        store.Free(second);
        store.Allocate(128);
    }
    const auto& bytes = memory.get_buffer();
    // The block that was taken is a record by now; nothing else has changed.
    std::string after = before;
    after.replace(16, 8, Number(kNone, 4) + Number(128, 2) + Number(1, 2));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), after);
    EXPECT_EQ(after.substr(0, 16), Header(136, 0, 1, 0));
}

TEST(DataStore, SingleFreeBlockIsFirstAndLast) {
    Store store;
    store.Add(1, 'a');
    store->Free(store.Add(1, 'b'));
    store->Flush();
    EXPECT_EQ(store.Content().substr(0, 16), Header(136, 1, 1, 0));
}

TEST(DataStore, LongFreeRunsFlushInPieces) {
    Store store;
    store->Free(store.Add(128 * 150, 'a'));
    store->Flush();
    Store again(store.Content());
    EXPECT_THAT(again->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 150}));
}

TEST(DataStore, FreedRecordOpensUntilTheFlush) {
    Store store;
    const auto id = store.Add(10, 'a');
    EXPECT_FALSE(store->IsFree(id));
    store->Free(id);
    EXPECT_TRUE(store->IsFree(id));
    EXPECT_EQ(store.Read(id), std::string(10, 'a'));
    store->Flush();
    EXPECT_EQ(Failure([&] { store->Open(id); }), kBadRecord);
}

TEST(DataStore, IsFreeKnowsBlocksBetweenTheRuns) {
    Store store(Header(136, 1, 3, 0) + Block(kNone, 1, 1) + Block(3, 0, 0) + Block(kNone, 1, 1) +
                Block(kNone, 0, 0));
    EXPECT_FALSE(store->IsFree(0));
    EXPECT_TRUE(store->IsFree(1));
    EXPECT_FALSE(store->IsFree(2));
    EXPECT_TRUE(store->IsFree(3));
    EXPECT_FALSE(store->IsFree(4));
}

TEST(DataStore, FreeChainMayStandInAnyOrder) {
    Store store(Header(136, 2, 1, 0) + Block(1, 0, 0) + Block(kNone, 0, 0) + Block(0, 0, 0));
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 3}));
}

TEST(DataStore, ReadersFollowNextWhereverItLeads) {
    std::string last = Block(kNone, 3, 0, 'c');
    Store store(Header(136, kNone, kNone, 0) + last + Block(3, 128, 1, 'a') + Block(kNone, 1, 1) +
                Block(0, 128, 0, 'b'));
    EXPECT_EQ(store.Read(1), std::string(128, 'a') + std::string(128, 'b') + "ccc");
    const std::string text = std::string(128, 'x') + std::string(128, 'y') + "zzz";
    store->Open(1).Write({text.data(), text.size()});
    EXPECT_EQ(store.Read(1), text);
    EXPECT_EQ(store.Content().substr(16 + 8, 4), "zzzc");
    store->Free(1);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 2}, BlockRun{3, 4}));
}

TEST(DataStore, SizeAddsWhatEachBlockUses) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 100, 1, 'a') + Block(kNone, 28, 0, 'b'));
    EXPECT_EQ(store->Open(0).Size(), 128u);
}

TEST(DataStore, ReadFillsAShorterRange) {
    Store store;
    const auto id = store.Add(300, 'a');
    nuo::byte target[200];
    EXPECT_EQ(store->Open(id).Read({target, 200}), target + 200);
    EXPECT_EQ(store->Open(id).Read({target, target}), target);
}

TEST(DataStore, BlockCutByTheEndOfTheFileGivesWhatIsThere) {
    const std::string whole = Header(136, kNone, kNone, 0) + Block(kNone, 100, 1, 'a');
    Store store(whole.substr(0, 16 + 8 + 40));
    nuo::byte target[128];
    DataRecord record = store->Open(0);
    EXPECT_EQ(record.Size(), 100u);
    EXPECT_EQ(record.Read({target, 128}), target + 40);
}

TEST(DataStore, WriteTakesExactlyTheSizeOfTheRecord) {
    Store store;
    const auto id = store.Add(10, 'a');
    EXPECT_EQ(Failure([&] { store->Open(id).Write({"abc", 3}); }), "incorrect record size");
    EXPECT_EQ(store.Read(id), std::string(10, 'a'));
}

TEST(DataStore, WorksOnACopyOfASource) {
    const auto source = Bytes(Header(136, kNone, kNone, 0) + Block(kNone, 3, 1, 'a'));
    buffer_in in(source);
    in.seek(5);
    DataStore store(in);
    EXPECT_EQ(store.Open(0).Size(), 3u);
    store.Free(0);
    store.Flush();
    EXPECT_EQ(get_random(store.Archive())->size(), 16u + 136u);
    EXPECT_EQ(source[4], 0xFF);
}

TEST(DataStore, ReadOnlyStoreReadsAndDoesNotFlush) {
    const auto source = Bytes(Header(136, kNone, kNone, 0) + Block(kNone, 3, 1, 'a'));
    DataStore store(archive_ptr(new nuo::default_deletorT<buffer_in>(source)));
    EXPECT_EQ(store.Open(0).Size(), 3u);
    EXPECT_EQ(Failure([&] { store.Allocate(1); }), "the store is read-only");
    EXPECT_EQ(Failure([&] { store.Open(0).Write({"xyz", 3}); }), "the store is read-only");
    store.Free(0);
    EXPECT_EQ(Failure([&] { store.Allocate(1); }), "the store is read-only");
    EXPECT_TRUE(store.IsFree(0));
    store.Flush();
    EXPECT_EQ(source[16 + 4], 3u);
}

TEST(DataStore, EmptyReadOnlyArchiveIsAnEmptyStore) {
    const nuo::buffer<nuo::byte> nothing;
    DataStore store(archive_ptr(new nuo::default_deletorT<buffer_in>(nothing)));
    EXPECT_EQ(store.BlockCount(), 0u);
    EXPECT_EQ(Failure([&] { store.Open(0); }), kBadRecord);
    store.Flush();
}

TEST(DataStore, ArchiveThatCannotBeReadIsRefused) {
    mem_write_archive sink;
    EXPECT_EQ(Failure([&] { DataStore store(sink); }), "the archive can't be read");
    EXPECT_EQ(Failure([&] { DataStore store(make_archive<mem_write_archive>()); }),
              "the archive can't be read");
}

TEST(DataStore, EmptyRecordIsRefusedAndLeavesTheStore) {
    Store store;
    EXPECT_EQ(Failure([&] { store->Allocate(0); }), "a record has at least one byte");
    EXPECT_EQ(store->BlockCount(), 0u);
}

TEST(DataStore, StoreDoesNotGrowPastThirtyTwoBits) {
    Store store;
    EXPECT_EQ(Failure([&] { store->Allocate(0xFFFFFFFF); }), "the store is full");
    EXPECT_EQ(store.Content().size(), 16u);
}

TEST(DataStoreHeader, BlockSizeComesFirst) {
    EXPECT_EQ(OpenFailure(Header(128, kNone, kNone, 0)), "incorrect block size");
    EXPECT_EQ(OpenFailure(Header(128, kNone, kNone, 1)), "incorrect block size");
}

TEST(DataStoreHeader, UnknownVersion) {
    EXPECT_EQ(OpenFailure(Header(136, kNone, kNone, 1)), "unknown datastore version");
}

TEST(DataStoreHeader, OneFreeIdWithoutTheOther) {
    const char* const message = "correpted data: mismatch free block id and last free block id";
    EXPECT_EQ(OpenFailure(Header(136, kNone, 5, 0)), message);
    EXPECT_EQ(OpenFailure(Header(136, 0, kNone, 0) + Block(kNone, 0, 0)), message);
}

TEST(DataStoreHeader, FirstFreeIdPastTheEnd) {
    EXPECT_EQ(OpenFailure(Header(136, 1, 1, 0) + Block(kNone, 0, 0)), kBadFree);
    EXPECT_EQ(OpenFailure(Header(136, 0, 0, 0)), kBadFree);
}

TEST(DataStoreHeader, FirstFreeIdWhoseOffsetWrapsIsPastTheEndToo) {
    // 136 * 0x20000000 is a multiple of 2 to the 32nd
    EXPECT_EQ(OpenFailure(Header(136, 0x20000000, 0x20000000, 0) + Block(kNone, 0, 0)), kBadFree);
}

TEST(DataStoreHeader, LastFreeIdPastTheEndIsNotNoticed) {
    Store store(Header(136, 0, 99, 0) + Block(kNone, 0, 0));
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 1}));
}

TEST(DataStoreHeader, FileThatEndsWithinTheHeader) {
    EXPECT_THROW(Store(std::string(15, '\0')), nuo::context_exception<read_failed>);
}

TEST(DataStoreFreeChain, CirclesAreFailures) {
    EXPECT_EQ(OpenFailure(Header(136, 0, 1, 0) + Block(1, 0, 0) + Block(0, 0, 0)), kBadFree);
    EXPECT_EQ(OpenFailure(Header(136, 0, 0, 0) + Block(0, 0, 0)), kBadFree);
}

TEST(DataStoreFreeChain, IdsPastTheEndAreFailures) {
    EXPECT_EQ(OpenFailure(Header(136, 0, 7, 0) + Block(7, 0, 0)), kBadFree);
    EXPECT_EQ(OpenFailure(Header(136, 0, 1, 0) + Block(1, 0, 0)), kBadFree);
}

TEST(DataStoreFreeChain, AllBlocksMayBeFree) {
    Store store(Header(136, 0, 1, 0) + Block(1, 0, 0) + Block(kNone, 0, 0));
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 2}));
}

TEST(DataStoreRecord, OpenRefusesWhatIsNoHead) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 128, 1) + Block(kNone, 1, 0) +
                Block(kNone, 129, 1) + Block(kNone, 1, 2));
    EXPECT_EQ(Failure([&] { store->Open(1); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(2); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(3); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(4); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(kNone); }), kBadRecord);
    EXPECT_EQ(store->Open(0).Size(), 129u);
}

TEST(DataStoreRecord, CircleFailsToRead) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 128, 1) + Block(0, 128, 0));
    nuo::byte target[8];
    EXPECT_EQ(Failure([&] { store->Open(0).Size(); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(0).Read({target, 8}); }), kBadRecord);
    EXPECT_EQ(Failure([&] { store->Open(0).Write({"x", 1}); }), kBadRecord);
}

TEST(DataStoreRecord, LaterBlockThatUsesTooMuchFails) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 128, 1) + Block(kNone, 0xFFFF, 0));
    EXPECT_EQ(Failure([&] { store->Open(0).Size(); }), kBadRecord);
}

TEST(DataStoreRecord, ChainPastTheEndFails) {
    Store store(Header(136, kNone, kNone, 0) + Block(9, 128, 1));
    EXPECT_EQ(Failure([&] { store->Open(0).Size(); }), kBadRecord);
}

TEST(DataStoreFreeing, EndsAtABlockThatIsFreeAlready) {
    Store store(Header(136, 1, 1, 0) + Block(1, 128, 1) + Block(2, 0, 0) + Block(kNone, 1, 1));
    EXPECT_EQ(OpenFailure(Header(136, 1, 1, 0) + Block(1, 128, 1) + Block(kNone, 0, 0)),
              "no failure");
    store->Free(0);
    EXPECT_TRUE(store->IsFree(0));
    const auto before = store->FreeBlocks().Runs();
    store->Free(0);
    EXPECT_EQ(store->FreeBlocks().Runs(), before);
}

TEST(DataStoreFreeing, EndsPastTheEnd) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 128, 1));
    store->Free(0);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 1}));
    store->Free(50);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 1}));
}

TEST(DataStoreFreeing, EndsInACircle) {
    Store store(Header(136, kNone, kNone, 0) + Block(1, 128, 1) + Block(0, 128, 0) +
                Block(2, 128, 1));
    store->Free(0);
    store->Free(2);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 3}));
}

TEST(DataStoreFreeing, TwoRecordsThatShareABlockFreeItOnce) {
    Store store(Header(136, kNone, kNone, 0) + Block(2, 128, 1) + Block(2, 128, 1) +
                Block(kNone, 1, 0));
    store->Free(0);
    store->Free(1);
    EXPECT_THAT(store->FreeBlocks().Runs(), ElementsAre(BlockRun{0, 3}));
}

// Counts the calls that reach the bytes.
class Counted : public mem_read_write_archive {
public:
    explicit Counted(int& calls) : calls_(calls) {}
    nuo::byte* read(byte_range range) override {
        ++calls_;
        return mem_read_write_archive::read(range);
    }
    const nuo::byte* write(const_byte_range range) override {
        ++calls_;
        return mem_read_write_archive::write(range);
    }

private:
    int& calls_;
};

TEST(DataStoreRecord, RecordsAreApartWhenNoneSharesABlockWithAnotherOrWithTheFreeOnes) {
    // 0 -> 1, 2 -> 1, 3, 4 free, 5 -> 5, 6 -> past the end
    Store store(Header(136, 4, 4, 0) + Block(1, 128, 1) + Block(kNone, 1, 0) + Block(1, 128, 1) +
                Block(kNone, 1, 1) + Block(kNone, 0, 0) + Block(5, 128, 1) + Block(7, 128, 1));
    EXPECT_TRUE(store->AreApart({}));
    EXPECT_TRUE(store->AreApart({0, 3}));
    EXPECT_TRUE(store->AreApart({3, 2}));
    EXPECT_FALSE(store->AreApart({0, 2}));
    EXPECT_FALSE(store->AreApart({3, 3}));
    EXPECT_FALSE(store->AreApart({4}));
    EXPECT_FALSE(store->AreApart({5}));
    EXPECT_FALSE(store->AreApart({6}));
    EXPECT_FALSE(store->AreApart({7}));
    store->Free(3);
    EXPECT_FALSE(store->AreApart({3}));
}

TEST(DataStoreRecord, ConsecutiveBlocksAreReadAndWrittenInOneGo) {
    int calls = 0;
    DataStore store(make_archive<Counted>(calls));
    DataRecord record = store.Allocate(8 * 128);
    const std::string text(8 * 128, 'x');
    record.Size();
    calls = 0;
    record.Write({text.data(), text.size()});
    EXPECT_EQ(calls, 2);
    calls = 0;
    nuo::byte target[8 * 128];
    record.Read({target, sizeof target});
    EXPECT_EQ(calls, 1);
}

// A last block that lost its tail is a record's all the same, as long as its used bytes are there.
TEST(DataStore, NewBlocksLieBehindALastOneThatWasCut) {
    std::string cut = Header(136, kNone, kNone, 0) + Block(kNone, 3, 1, 'a');
    cut.resize(16 + 8 + 3);
    Store store(cut);
    EXPECT_EQ(store.Add(2, 'b'), 1u);
    char text[3];
    EXPECT_EQ(store->Open(0).Size(), 3u);
    store->Open(0).Read({text, sizeof text});
    EXPECT_EQ(std::string(text, sizeof text), "aaa");
    EXPECT_EQ(store.Content().size(), 16u + 2 * 136);
}

}  // namespace
