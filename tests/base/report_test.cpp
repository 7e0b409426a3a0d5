#include "assets/manager/base/report.h"

#include <korvanet/platform/assets/reportsink.h>

#include <stdexcept>

#include "nuo/common/string.h"

namespace {

using korvanet::platform::assets::HalvernError;
using korvanet::platform::assets::HalvernReportBase;
using korvanet::platform::assets::HalvernWarn;
using korvanet::platform::assets::HasReportSink;
using korvanet::platform::assets::IReportSink;
using korvanet::platform::assets::SetReportSink;
using korvanet::platform::core::WideString;

class RecordingSink : public IReportSink {
public:
    void Trace(const WideString&, std::uint32_t, std::uint32_t) override {
        Add("trace", L"", 0, 0);
    }
    void Information(const WideString&, std::uint32_t, std::uint32_t) override {
        Add("information", L"", 0, 0);
    }
    void Warning(const WideString& text, std::uint32_t code, std::uint32_t context) override {
        Add("warning", text.AsWide(), code, context);
    }
    void Error(const WideString& text, std::uint32_t code, std::uint32_t context) override {
        Add("error", text.AsWide(), code, context);
    }

    struct Report {
        std::string kind;
        std::wstring text;
        std::uint32_t code;
        std::uint32_t context;
    };
    std::vector<Report> reports;

private:
    void Add(const char* kind, const wchar_t* text, std::uint32_t code, std::uint32_t context) {
        reports.push_back({kind, text, code, context});
    }
};

class ThrowingSink : public RecordingSink {
public:
    void Error(const WideString&, std::uint32_t, std::uint32_t) override {
        throw std::runtime_error("a sink must not throw");
    }
};

class Reports : public testing::Test {
protected:
    void TearDown() override { SetReportSink(nullptr); }

    RecordingSink sink_;
};

TEST_F(Reports, HaveNoSinkAtStart) {
    EXPECT_FALSE(HasReportSink());
    EXPECT_EQ(SetReportSink(nullptr), nullptr);
}

TEST_F(Reports, SettingASinkReturnsTheFormerOne) {
    RecordingSink other;
    EXPECT_EQ(SetReportSink(&sink_), nullptr);
    EXPECT_TRUE(HasReportSink());
    EXPECT_EQ(SetReportSink(&other), &sink_);
    EXPECT_EQ(SetReportSink(nullptr), &other);
    EXPECT_FALSE(HasReportSink());
}

TEST_F(Reports, ErrorsAndWarningsArriveOnceWithTwoZeros) {
    SetReportSink(&sink_);
    HalvernError("Index is out of scope.").Deliver();
    HalvernWarn("there is no asset registered").Deliver();
    ASSERT_EQ(sink_.reports.size(), 2u);
    EXPECT_EQ(sink_.reports[0].kind, "error");
    EXPECT_EQ(sink_.reports[0].text, L"Index is out of scope.");
    EXPECT_EQ(sink_.reports[1].kind, "warning");
    EXPECT_EQ(sink_.reports[1].text, L"there is no asset registered");
    for (const RecordingSink::Report& report : sink_.reports) {
        EXPECT_EQ(report.code, 0u);
        EXPECT_EQ(report.context, 0u);
    }
}

TEST_F(Reports, JoinTheirPiecesWithNothingBetween) {
    SetReportSink(&sink_);
    const nuo::string id("gr\xC3\xBC\xF0\x9F\x8E\xA8");
    HalvernWarn("Property flags conflict in Node: ", id, ", ErrorCode: ", 34).Deliver();
    HalvernError(-5, " ", ~std::uint64_t{0}).Deliver();
    ASSERT_EQ(sink_.reports.size(), 2u);
    EXPECT_EQ(sink_.reports[0].text,
              L"Property flags conflict in Node: gr\xFC\x1F3A8, ErrorCode: 34");
    EXPECT_EQ(sink_.reports[1].text, L"-5 18446744073709551615");
}

TEST_F(Reports, ThatAreNotDeliveredAreNotHeard) {
    SetReportSink(&sink_);
    { const HalvernError report("kept to itself"); }
    EXPECT_TRUE(sink_.reports.empty());
}

TEST_F(Reports, TheBaseDeliversNothing) {
    class Plain final : public HalvernReportBase {
    public:
        Plain() { Write("text"); }
    };
    SetReportSink(&sink_);
    Plain().Deliver();
    EXPECT_TRUE(sink_.reports.empty());
}

TEST_F(Reports, WithoutASinkNothingIsHeard) {
    HalvernError("lost").Deliver();
    HalvernWarn("lost").Deliver();
    SetReportSink(&sink_);
    EXPECT_TRUE(sink_.reports.empty());
}

TEST_F(Reports, WhatASinkThrowsStaysInside) {
    ThrowingSink throwing;
    SetReportSink(&throwing);
    HalvernError("x").Deliver();
    EXPECT_TRUE(throwing.reports.empty());
}

class ReadableReport final : public HalvernReportBase {
public:
    template <class... Pieces>
    explicit ReadableReport(const Pieces&... pieces) {
        Write(pieces...);
    }
    using HalvernReportBase::text;
};

TEST_F(Reports, WithoutASinkTheTextIsNotEvenPutTogether) {
    EXPECT_TRUE(ReadableReport("some words ", 42).text().empty());
    SetReportSink(&sink_);
    EXPECT_EQ(ReadableReport("some words ", 42).text(), "some words 42");
}

}  // namespace
