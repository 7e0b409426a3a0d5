#include "vfs/contract/file_system_contract.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <set>

namespace vfs_contract {

namespace {

class ContractTest : public testing::Test {
public:
    ContractTest(Backend backend, Case contractCase)
        : backend_(std::move(backend)), case_(std::move(contractCase)) {}

    void TestBody() override {
        const std::unique_ptr<Stage> stage = backend_.make();
        ASSERT_NE(stage, nullptr);
        case_.run(stage->files());
    }

private:
    Backend backend_;
    Case case_;
};

std::vector<Case> AllCases() {
    std::vector<Case> all;
    for (const auto& subject : {DirectoryCases(), FileCases(), CopyCases(), FunctionCases()})
        all.insert(all.end(), subject.begin(), subject.end());
    return all;
}

void CheckExcuses(const Backend& backend, const std::vector<Case>& cases) {
    std::set<std::string> names;
    for (const Case& known : cases)
        names.insert(known.name);
    for (const auto& [name, reason] : backend.excused) {
        if (names.count(name) == 1 && !reason.empty()) continue;
        std::fprintf(stderr, "%s is excused from '%s', which is no case or has no reason\n",
                     backend.name.c_str(), name.c_str());
        std::abort();
    }
}

}  // namespace

bool Register(const std::vector<Backend>& backends) {
    const std::vector<Case> cases = AllCases();
    for (const Backend& backend : backends) {
        CheckExcuses(backend, cases);
        for (const Case& one : cases) {
            if (backend.excused.count(one.name) != 0) continue;
            testing::RegisterTest(
                ("FileSystemContract/" + backend.name).c_str(), one.name.c_str(), nullptr, nullptr,
                __FILE__, __LINE__,
                [backend, one]() -> testing::Test* { return new ContractTest(backend, one); });
        }
    }
    return true;
}

}  // namespace vfs_contract
