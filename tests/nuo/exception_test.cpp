#include "nuo/common/exception.h"

#include <gtest/gtest.h>

#include <string>

#include "nuo/common/string.h"
#include "tests/support/virtualslots.h"

namespace {

NUO_DECLARE_EXCEPTION(lamp_broken);

TEST(Exception, WithoutTextGivesTheEmptyTextAndNotNull) {
    const nuo::context_exception<lamp_broken> failure;
    EXPECT_EQ(failure.what(), nuo::empty_text());
    EXPECT_STREQ(failure.what(), "");
}

TEST(Exception, OperationsKeepTheirOrder) {
    using halvern_tests::Place;
    halvern_tests::ExpectOrder(0, {halvern_tests::kDestructor, Place(&nuo::exception::what),
                                   Place(&nuo::exception::append)});
}

TEST(Exception, AppendAddsAndIgnoresNull) {
    nuo::context_exception<lamp_broken> failure;
    nuo::exception& base = failure;
    EXPECT_EQ(&base.append("a").append(nullptr).append("bc"), &base);
    EXPECT_STREQ(failure.what(), "abc");
}

TEST(Exception, MessageIsFileLineAndTextWithNothingBetween) {
    const std::string file = __FILE__;
    unsigned line = 0;
    try {
        line = __LINE__ + 1;
        NUO_RAISE(lamp_broken, "the lamp is broken: ", nuo::string("desk"), ' ' - 30, "/", 7u);
    } catch (const lamp_broken& failure) {
        EXPECT_EQ(failure.what(),
                  file + "(" + std::to_string(line) + ")the lamp is broken: desk2/7");
    }
}

TEST(Exception, MessageWithoutTextEndsBehindTheLine) {
    const std::string file = __FILE__;
    try {
        NUO_RAISE(lamp_broken);
    } catch (const nuo::exception& failure) {
        const std::string message = failure.what();
        EXPECT_EQ(message.substr(0, file.size() + 1), file + "(");
        EXPECT_EQ(message.back(), ')');
    }
}

TEST(Exception, IsCaughtByMarkerByRootAndAsTheStandardOne) {
    EXPECT_THROW(NUO_RAISE(lamp_broken), lamp_broken);
    EXPECT_THROW(NUO_RAISE(lamp_broken), nuo::context_exception<lamp_broken>);
    EXPECT_THROW(NUO_RAISE(lamp_broken), nuo::exception);
    EXPECT_THROW(NUO_RAISE(lamp_broken), std::exception);
}

TEST(Exception, CopyHasItsOwnMessage) {
    nuo::context_exception<lamp_broken> failure;
    failure.append("a");
    nuo::context_exception<lamp_broken> copy(failure);
    copy.append("b");
    EXPECT_STREQ(failure.what(), "a");
    EXPECT_STREQ(copy.what(), "ab");
}

}  // namespace
