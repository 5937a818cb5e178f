#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>

#include "platform/linux/adapters.h"
#include "support/bytes_file.h"
#include "support/linux_archive_maker.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::makeZip;

struct Parts {
    std::map<std::string, std::string> contents;
    std::map<std::string, bool> cut;
    Status status;
};

Parts partsOf(const std::string& package, std::uint64_t limit = 1'000'000)
{
    Parts parts;
    BytesFile file(package);
    parts.status = makeLibarchivePackages()->walk(file, [&](PackagePart& part) {
        const std::string name(part.name());
        bool cut = false;
        if (const auto bytes = part.read(limit, &cut)) {
            parts.contents[name] = std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
            parts.cut[name] = cut;
        }
        return true;
    });
    return parts;
}

ErrorKind faultOf(const std::string& package)
{
    const Parts parts = partsOf(package);
    EXPECT_FALSE(parts.status.ok());
    return parts.status.ok() ? ErrorKind::io : parts.status.error().kind;
}

TEST(LinuxPackagedFilesTest, GivesPartsByNameAndContent)
{
    for (const bool stored : {false, true}) {
        const Parts parts =
            partsOf(makeZip({{"mimetype", "application/x"}, {"a/\u00e4 b.xml", "<a/>"}, {"empty", ""}}, stored));
        EXPECT_TRUE(parts.status.ok());
        EXPECT_EQ(parts.contents, (std::map<std::string, std::string>{
                                      {"mimetype", "application/x"}, {"a/\u00e4 b.xml", "<a/>"}, {"empty", ""}}));
    }
}

TEST(LinuxPackagedFilesTest, StopsWhenTheSinkHasHadEnough)
{
    BytesFile file(makeZip({{"one", "1"}, {"two", "2"}}));
    int seen = 0;
    EXPECT_TRUE(makeLibarchivePackages()->walk(file, [&](PackagePart&) { return ++seen < 1; }).ok());
    EXPECT_EQ(seen, 1);
}

TEST(LinuxPackagedFilesTest, UnpacksNoMoreThanAskedFor)
{
    Parts parts = partsOf(makeZip({{"bomb", std::string(10'000'000, '\0')}, {"fits", std::string(1000, 'x')}}), 1000);
    EXPECT_TRUE(parts.status.ok());
    EXPECT_EQ(parts.contents["bomb"].size(), 1000u);
    EXPECT_TRUE(parts.cut["bomb"]);
    EXPECT_EQ(parts.contents["fits"].size(), 1000u);
    EXPECT_FALSE(parts.cut["fits"]);
}

TEST(LinuxPackagedFilesTest, BoundsTheNumberOfParts)
{
    const std::vector<testing::MadeEntry> entries(100'000, {"p", ""});
    BytesFile file(makeZip(entries, true));
    unsigned seen = 0;
    const Status status = makeLibarchivePackages()->walk(file, [&](PackagePart&) { return ++seen > 0; });
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().kind, ErrorKind::invalid);
    EXPECT_LT(seen, 100'000u);
}

TEST(LinuxPackagedFilesTest, SaysWhatIsEncrypted)
{
    EXPECT_EQ(faultOf(makeZip({{"secret", "content"}}, false, "password")), ErrorKind::accessDenied);
}

TEST(LinuxPackagedFilesTest, SurvivesDamage)
{
    std::string noise(40'000, '\0');
    std::generate(noise.begin(), noise.end(),
                  [random = std::minstd_rand()]() mutable { return static_cast<char>(random() >> 8); });
    const std::string package = makeZip({{"one", noise}, {"two", "2"}});
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_EQ(faultOf(package.substr(0, package.size() * i / 20)), ErrorKind::invalid) << i;
    std::string changed = package;
    changed[package.size() / 2] ^= 0x55;
    const Parts parts = partsOf(changed);
    EXPECT_FALSE(parts.status.ok());
    EXPECT_EQ(parts.contents.count("one"), 0u);
    EXPECT_EQ(faultOf("plain text"), ErrorKind::invalid);
}

}  // namespace
}  // namespace kelvane
