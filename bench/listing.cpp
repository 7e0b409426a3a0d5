#include "bench/listing.h"

#include <cstdio>
#include <cstring>
#include <fstream>

namespace halvern_bench {
namespace {

constexpr const char* kChildArgument = "--list-and-tell-peak";

// Counts what was read; `got` is the answer of the operation that filled the text.
class Counter {
public:
    Listed listed;
    UTF8String text;

    void Take(bool got) {
        if (got) listed.characters += std::strlen(text.AsUTF8());
    }
};

std::uint64_t PeakOfThisProcess() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        std::uint64_t peak = 0;
        if (word == "VmHWM:" && status >> peak) return peak;
    }
    return 0;
}

}  // namespace

Listed ListAll(assets::IAssetLibrary& library) {
    Counter counter;
    UTF8String& text = counter.text;
    const UTF8String locale("en-US");
    for (const IteratorPtr at(library.GetDefinitions()); !at->IsAtEnd(); at->Next()) {
        ++counter.listed.definitions;
        counter.Take(at->GetName(text));
        counter.Take(at->GetUIName(text, locale));
        counter.Take(at->GetDescription(text, locale));
        counter.Take(at->GetBaseSchema(text));
        counter.Take(at->GetVersionGUID(text));
        for (std::uint64_t i = 0, count = at->GetKeywordCount(); i < count; ++i)
            counter.Take(at->GetKeyword(i, text, locale));
        for (std::uint64_t i = 0, count = at->GetCategoryCount(); i < count; ++i)
            counter.Take(at->GetCategory(i, text, locale));
        for (std::uint64_t i = 0, count = at->GetThumbnailCount(); i < count; ++i)
            counter.Take(at->GetThumbnail(i, text));
        counter.listed.characters += at->IsHidden() ? 1 : 0;
    }
    return counter.listed;
}

std::uint64_t PeakOfListing(const std::string& path) {
    const std::string command =
        "exec /proc/" + std::to_string(::getpid()) + "/exe " + kChildArgument + " '" + path + "'";
    std::FILE* const child = ::popen(command.c_str(), "r");
    if (child == nullptr) return 0;
    unsigned long long peak = 0;
    if (std::fscanf(child, "%llu", &peak) != 1) peak = 0;
    ::pclose(child);
    return peak;
}

bool IsListingChild(int argc, char** argv, int& result) {
    if (argc != 3 || std::strcmp(argv[1], kChildArgument) != 0) return false;
    {
        const OpenLibrary library(argv[2]);
        ListAll(*library);
    }
    std::printf("%llu\n", static_cast<unsigned long long>(PeakOfThisProcess()));
    result = 0;
    return true;
}

}  // namespace halvern_bench
