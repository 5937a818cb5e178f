#include "platform/mo_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/mo_maker.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::makeMo;
using testing::moNumber;

// "context|original|translation" of every entry, or "invalid" alone.
std::vector<std::string> read(const std::string& file)
{
    std::vector<std::string> entries;
    const auto status = readMoCatalogue(std::as_bytes(std::span(file)), [&](const MoEntry& entry) {
        entries.push_back(std::string(entry.context) + '|' + std::string(entry.original) + '|' +
                          std::string(entry.translation));
    });
    return status ? entries : std::vector<std::string>{"invalid"};
}

std::string with(std::string file, std::size_t at, const std::string& bytes)
{
    return file.replace(at, bytes.size(), bytes);
}

TEST(MoCatalogue, IsReadInBothByteOrders)
{
    const testing::MoRows rows = {{"", "Language: de\n"},
                                  {"130\4English", "Deutsch"},
                                  {std::string("one\0many", 8), std::string("eins\0viele", 10)},
                                  {"plain", "schlicht \xC3\xA4"}};
    for (const bool bigEndian : {false, true})
        EXPECT_THAT(read(makeMo(rows, bigEndian)),
                    ElementsAre("||Language: de\n", "130|English|Deutsch", "|one|eins", "|plain|schlicht \xC3\xA4"));
    EXPECT_THAT(read(makeMo({})), ElementsAre());
}

TEST(MoCatalogue, DamageIsNoticedWhereverItIs)
{
    const std::string whole = makeMo({{"130\4English", "Deutsch"}});
    const std::string broken[] = {
        with(whole, 0, moNumber(0x12345678, false)),     // magic
        with(whole, 4, moNumber(0x20000, false)),        // a major revision of another day
        with(whole, 8, moNumber(0xFFFFFFFF, false)),     // more rows than the file can hold
        with(whole, 12, moNumber(whole.size(), false)),  // table behind the end
        with(whole, 16, moNumber(0xFFFFFFF8, false)),    // offset near the overflow
        with(whole, 28, moNumber(0xFFFFFFFF, false)),    // length of an original
        with(whole, 32, moNumber(0xFFFFFFF0, false)),    // its place
        with(whole, 36, moNumber(6, false)),             // a translation that no NUL ends
        with(whole, whole.size() - 3, "\xFF"),           // not UTF-8
        std::string(largestMoFile + 1, '\0').replace(0, whole.size(), whole),
    };
    for (const auto& file : broken)
        EXPECT_THAT(read(file), ElementsAre("invalid"));
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_THAT(read(whole.substr(0, size)), ElementsAre("invalid")) << size;
}

}  // namespace
}  // namespace kelvane
