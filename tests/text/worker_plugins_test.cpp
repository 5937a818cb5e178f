#include "text/worker_plugins.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

constexpr std::uint32_t number = 0, fullText = 8;  // fields of the sample

// The plug-in runs in processes of its own, so it may do what it likes.
class WorkerPluginsTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<PluginAccess> plugins(std::chrono::milliseconds patience = std::chrono::minutes(2))
    {
        WorkerLimits limits;
        limits.perRequest = patience;
        return makeWorkerPlugins(platform_->workers(), limits, 2);
    }
    [[nodiscard]] PluginQuestion question(std::string_view file, std::uint32_t field = number) const
    {
        return {sample_, tree_.write(file, "text of the file"), field};
    }

    const testing::TempTree tree_;
    const std::unique_ptr<Platform> platform_ = makePlatform();
    const std::filesystem::path sample_ = std::filesystem::absolute(KELVANE_SAMPLE_PLUGIN);
    const CancelFlag never_;
};

TEST_F(WorkerPluginsTest, AnswersAsInThisProcess)
{
    const auto workers = plugins();
    const auto description = workers->describe(sample_, never_);
    ASSERT_TRUE(description) << description.error().detail;
    EXPECT_EQ(description->fields.size(), 16u);
    EXPECT_EQ(description->detect, "EXT=\"SMP\" | EXT=\"TXT\"");
    const auto value = workers->value(question("a.txt"), never_);
    ASSERT_TRUE(value) << value.error().detail;
    EXPECT_EQ(value->type, VarType::int32);
    EXPECT_EQ(std::get<std::uint64_t>(value->data), static_cast<std::uint64_t>(-7));
    const ExtractedDocument document = workers->fullText(question("a.txt", fullText), 100, never_);
    EXPECT_EQ(document.outcome, TextOutcome::extracted);
    EXPECT_EQ(document.text, u"text of the file");
}

TEST_F(WorkerPluginsTest, PassesOnWhyAPluginIsRefused)
{
    const auto workers = plugins();
    const auto missing = workers->describe(tree_.path("missing.wdx64"), never_);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::notFound);
    EXPECT_FALSE(workers->describe(tree_.write("text.wdx64", "text"), never_));
}

TEST_F(WorkerPluginsTest, ABreakdownCostsOneValue)
{
    const auto workers = plugins();
    EXPECT_FALSE(workers->value(question("crash.txt"), never_));
    EXPECT_EQ(workers->fullText(question("crash.txt", fullText), 100, never_).outcome, TextOutcome::crashed);
    EXPECT_TRUE(workers->value(question("a.txt"), never_));
}

TEST_F(WorkerPluginsTest, WhatTakesTooLongIsGivenUp)
{
    const auto workers = plugins(std::chrono::milliseconds(1500));
    const auto value = workers->value(question("hang.txt"), never_);
    ASSERT_FALSE(value);
    EXPECT_EQ(value.error().detail, "it took too long");
    EXPECT_TRUE(workers->value(question("a.txt"), never_));
}

}  // namespace
}  // namespace kelvane
