#include "base/result.h"

#include <memory>

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(Result, HoldsEitherAValueOrAnError)
{
    Result<std::string> good = std::string("text");
    ASSERT_TRUE(good.ok());
    EXPECT_EQ(*good, "text");
    EXPECT_EQ(good->size(), 4u);

    const Result<std::string> bad = Error{ErrorKind::notFound, 2, "no such file"};
    ASSERT_FALSE(bad.ok());
    EXPECT_EQ(bad.error().kind, ErrorKind::notFound);
    EXPECT_EQ(bad.error().systemCode, 2);
}

TEST(Result, GivesAwayAValueThatCannotBeCopied)
{
    Result<std::unique_ptr<int>> made = std::make_unique<int>(7);
    const std::unique_ptr<int> taken = std::move(made).value();
    EXPECT_EQ(*taken, 7);
}

TEST(Result, AskingForTheWrongOneNeverGoesUnnoticed)
{
    const Result<int> bad = Error{};
    EXPECT_THROW((void)bad.value(), std::bad_variant_access);
    const Result<int> good = 1;
    EXPECT_THROW((void)good.error(), std::bad_variant_access);
}

TEST(Status, IsSuccessUnlessAnErrorIsGiven)
{
    EXPECT_TRUE(Status().ok());
    const Status failed = Error{ErrorKind::io, 5, "input/output error"};
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().detail, "input/output error");
}

}  // namespace
}  // namespace kelvane
