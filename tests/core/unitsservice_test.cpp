#include "platform/units/unitsservice.h"

#include "tests/support/paths.h"

namespace {

using korvanet::platform::core::UnitsService;

class Units : public testing::Test {
protected:
    void TearDown() override { service_.SetPath(nullptr); }

    std::wstring NameOf(int code) {
        std::size_t length = 0;
        if (service_.GetGlobalNameLength(code, length) != 0) return L"(no length)";
        std::wstring name(length + 1, L'?');
        if (service_.GetGlobalName(code, name.data(), name.size()) != 0) return L"(no name)";
        name.resize(length);
        return name;
    }

    int CodeOf(const wchar_t* word) {
        int code = -7;
        return service_.GetUnitType(word, code) == 0 ? code : 0;
    }

    UnitsService& service_ = UnitsService::Instance();
};

struct Unit {
    int code;
    std::vector<const wchar_t*> words;
};

const Unit kUnits[] = {
    {8206, {L"mm", L"millimeter", L"millimetre", L"millimeters", L"millimetres"}},
    {8205, {L"cm", L"centimeter", L"centimetre", L"centimeters", L"centimetres"}},
    {8204, {L"dm", L"decimeter", L"decimetre", L"decimeters", L"decimetres"}},
    {8193, {L"m", L"meter", L"metre", L"meters", L"metres"}},
    {8201, {L"km", L"kilometer", L"kilometre", L"kilometers", L"kilometres"}},
    {8214, {L"in", L"inch", L"inches"}},
    {8215, {L"ft", L"foot", L"feet"}},
    {8221, {L"yd", L"yard", L"yards"}},
    {8225, {L"mi", L"mile", L"miles"}},
};

TEST_F(Units, KnowsNineLengthsByTheirWords) {
    for (const Unit& unit : kUnits) {
        for (const wchar_t* word : unit.words)
            EXPECT_EQ(CodeOf(word), unit.code) << word;
    }
}

TEST_F(Units, NamesEachLengthByItsFirstWord) {
    for (const Unit& unit : kUnits)
        EXPECT_EQ(NameOf(unit.code), unit.words[0]);
}

TEST_F(Units, KnowsNoOthers) {
    for (const wchar_t* word : {L"", L"MM", L"parsec", L"mmm", L"meterss", L"kg"})
        EXPECT_EQ(CodeOf(word), 0) << word;
    int known = 0;
    for (int code = -10; code != 70000; ++code) {
        std::size_t length = 0;
        if (service_.GetGlobalNameLength(code, length) == 0) ++known;
    }
    EXPECT_EQ(known, 9);
}

TEST_F(Units, RefusesNullAndSmallBuffersAndWritesNothing) {
    int code = 42;
    EXPECT_NE(service_.GetUnitType(nullptr, code), 0);
    EXPECT_EQ(code, 42);
    wchar_t buffer[3] = {L'x', L'x', L'x'};
    EXPECT_NE(service_.GetGlobalName(8206, buffer, 2), 0);
    EXPECT_NE(service_.GetGlobalName(8206, nullptr, 3), 0);
    EXPECT_NE(service_.GetGlobalName(1, buffer, 3), 0);
    EXPECT_EQ(buffer[0], L'x');
    EXPECT_EQ(service_.GetGlobalName(8206, buffer, 3), 0);
    EXPECT_STREQ(buffer, L"mm");
}

TEST_F(Units, AnotherServiceCanTakeItsPlace) {
    EXPECT_EQ(CodeOf(L"furlong"), 0);
    service_.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units.so").c_str());
    EXPECT_EQ(CodeOf(L"furlong"), 8999);
    EXPECT_EQ(NameOf(8999), L"furlong");
    EXPECT_EQ(CodeOf(L"mm"), 0);
    service_.SetPath(nullptr);
    EXPECT_EQ(CodeOf(L"furlong"), 0);
    EXPECT_EQ(CodeOf(L"mm"), 8206);
}

TEST_F(Units, WithoutAServiceEverythingFails) {
    service_.SetPath("/nowhere/libhalvernunits.so");
    int code = 42;
    std::size_t length = 42;
    wchar_t buffer[8] = L"before";
    EXPECT_EQ(service_.GetUnitType(L"mm", code), UnitsService::kNoService);
    EXPECT_EQ(service_.GetGlobalNameLength(8206, length), UnitsService::kNoService);
    EXPECT_EQ(service_.GetGlobalName(8206, buffer, 8), UnitsService::kNoService);
    EXPECT_EQ(code, 42);
    EXPECT_EQ(length, 42u);
    EXPECT_STREQ(buffer, L"before");
}

TEST_F(Units, ALibraryThatLacksAFunctionIsNoService) {
    service_.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units_incomplete.so").c_str());
    int code = 42;
    EXPECT_EQ(service_.GetUnitType(L"mm", code), UnitsService::kNoService);
}

}  // namespace
