#include "text/compound_file.h"

#include <gtest/gtest.h>

#include "support/bytes_file.h"
#include "support/compound_maker.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::makeCompound;

std::string read(const std::string& bytes, const std::string& stream, std::size_t most = 100'000)
{
    BytesFile file(bytes);
    auto compound = CompoundFile::open(file);
    if (!compound)
        return "not opened: " + compound.error().detail;
    const auto content = compound->read(stream, most);
    return content ? std::string(reinterpret_cast<const char*>(content->data()), content->size())
                   : "not read: " + content.error().detail;
}

TEST(CompoundFileTest, ReadsLargeAndSmallStreams)
{
    const std::string large(5000, 'l'), small(100, 's');
    const std::string file = makeCompound({{"Large", large}, {"Small", small}, {"Other", "o"}});
    EXPECT_EQ(read(file, "Large"), large);
    EXPECT_EQ(read(file, "Small"), small);
    EXPECT_EQ(read(file, "Other"), "o");
    EXPECT_EQ(read(file, "Large", 4100), large.substr(0, 4100));
    EXPECT_EQ(read(file, "None"), "not read: no such stream");
}

TEST(CompoundFileTest, EndsChainsThatTurnBack)
{
    std::string file = makeCompound({{"Large", std::string(5000, 'l')}});
    const std::size_t table = file.size() - 512;
    file.replace(table + 4, 4, testing::littleEndianBytes(0u));  // the second sector leads to the first
    EXPECT_EQ(read(file, "Large"), std::string(5000, 'l'));
}

TEST(CompoundFileTest, SurvivesDamage)
{
    const std::string whole = makeCompound({{"Large", std::string(5000, 'l')}, {"Small", "s"}});
    for (std::size_t i = 0; i < 19; ++i)  // the last twentieth is nothing but filling
        EXPECT_TRUE(read(whole.substr(0, whole.size() * i / 20), "Large").starts_with("not ")) << i;
    for (std::size_t at = 24; at < whole.size(); at += 3) {
        std::string changed = whole;
        changed[at] = '\x7F';
        for (const char* stream : {"Large", "Small"})
            EXPECT_LE(read(changed, stream).size(), 100'000u);
    }
}

}  // namespace
}  // namespace kelvane
