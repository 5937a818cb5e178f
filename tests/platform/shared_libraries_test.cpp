#include "platform/shared_libraries.h"

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

class SharedLibrariesTest : public ::testing::Test {
protected:
    const std::unique_ptr<Platform> platform_ = makePlatform();
    SharedLibraries& libraries_ = platform_->libraries();
    const std::filesystem::path sample_ = std::filesystem::absolute(KELVANE_SAMPLE_LIBRARY);
};

TEST_F(SharedLibrariesTest, CallsWhatALibraryOffersAndKnowsWhatItDoesNot)
{
    const auto library = libraries_.load(sample_);
    ASSERT_TRUE(library) << library.error().detail;
    const auto answer = reinterpret_cast<int (*)()>((*library)->function("sampleAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ((*library)->function("sampleQuestion"), nullptr);
}

TEST_F(SharedLibrariesTest, LetsGoOfTheLibraryWithTheObject)
{
    bool gone = false;
    {
        const auto library = libraries_.load(sample_);
        ASSERT_TRUE(library) << library.error().detail;
        reinterpret_cast<void (*)(bool*)>((*library)->function("sampleTellUnloading"))(&gone);
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
}

TEST_F(SharedLibrariesTest, TellsWhatIsMissingFromWhatIsNoLibrary)
{
    const testing::TempTree tree;
    const auto text = tree.write("text.dll", "no library at all");
    const auto missing = libraries_.load(tree.path("missing.dll"));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::notFound);
    const auto damaged = libraries_.load(text);
    ASSERT_FALSE(damaged);
    EXPECT_EQ(damaged.error().kind, ErrorKind::invalid);
    EXPECT_FALSE(damaged.error().detail.empty());
}

// A bare name would be looked for where others may put theirs.
TEST_F(SharedLibrariesTest, TakesNoNameWithoutItsFolder)
{
    const auto library = libraries_.load(sample_.filename());
    ASSERT_FALSE(library);
    EXPECT_EQ(library.error().kind, ErrorKind::invalid);
}

}  // namespace
}  // namespace kelvane
