#include "engine/results_content.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "engine/node_blob.h"
#include "support/bytes_reader.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;
using Bytes = std::vector<std::byte>;

using testing::BytesReader;

Result<ResultsContent> decoded(const Bytes& bytes)
{
    BytesReader reader(bytes);
    return decodeResults(reader, CancelFlag());
}

std::string fault(const Bytes& bytes)
{
    const auto content = decoded(bytes);
    return content ? "" : content.error().detail;
}

// "/data/ann" with "a", an entry of "b.zip" and "c/d"; the root is that of the running system.
ResultsContent sound()
{
    const FileInfo folderInfo{FileKind::folder, 0, {}, {}, {}};
    const FileInfo fileInfo{FileKind::regular, attribute::archive, {1000}, {133'000'000'000'000'000}, {7, 8}};
    const FileInfo entryInfo{FileKind::regular, attribute::readOnly, {1000}, {5}, {0, 3}};
    const NativeString root = testing::native(testing::pathsArePosix ? "/data/ann" : "C:\\data\\ann");
    const auto child = [](const Ref<const ShellItem>& parent, const char* name, const FileInfo& info,
                          ShellItem::Place place = ShellItem::Place::fileSystem) -> Ref<const ShellItem> {
        return ShellItem::make(parent, testing::native(name), info, place);
    };
    const Ref<const ShellItem> folder = ShellItem::make(nullptr, root, folderInfo, {});
    const auto archive = child(folder, "b.zip", fileInfo, ShellItem::Place::archive);
    const std::vector<StoredRow> rows = {
        {child(folder, "a", fileInfo), 1, false},
        {child(archive, "e", entryInfo, ShellItem::Place::insideArchive), 1, true},
        {child(child(folder, "c", folderInfo), "d", fileInfo), highestGroup, false},
    };
    CScanNode scan;
    scan.properties = "System.Size";
    return {u"System.Size,Stock.GroupID", true,        true, *ItemBlock::check(*buildItemBlock(rows)),
            {1, 1, highestGroup},         toBlob(scan)};
}

// Where the fields of sound() begin.
struct Layout {
    explicit Layout(const ResultsContent& content)
        : view(8 + 2 * (content.columns.size() + 1)),
          block(view + 8),
          groups(block + content.items.bytes().size()),
          definition(groups + 4 * content.groups.size())
    {
    }
    std::size_t view, block, groups, definition;
};

Bytes changed(Bytes bytes, std::size_t at, std::uint64_t value, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes.at(at + i) = static_cast<std::byte>(value >> (8 * i) & 0xFF);
    return bytes;
}

// The bytes of the worked example, from the lines of hexadecimal digits that a wide gap ends.
TEST(ResultsContent, IsAsTheDocumentShowsIt)
{
    if (!testing::pathsArePosix)
        GTEST_SKIP() << "the example has POSIX paths";
    std::ifstream page(KELVANE_RESULTS_PAGE);
    std::string line;
    while (std::getline(page, line) && line != "## Example") {
    }
    Bytes shown;
    while (std::getline(page, line)) {
        std::istringstream digits(line.substr(0, 67));
        for (unsigned value = 0; line.size() > 67 && line[2] == ' ' && digits >> std::hex >> value;)
            shown.push_back(static_cast<std::byte>(value));
    }
    const auto folder = ShellItem::make(nullptr, testing::native("/home/ann"), {FileKind::folder, 0, {}, {}, {}}, {});
    FileInfo info{FileKind::regular, attribute::archive, {1000}, {133'770'312'000'000'000}, {2049, 77}};
    std::vector<StoredRow> rows{{ShellItem::make(folder, testing::native("a.txt"), info, {}), 1, false}};
    info.identity.index = 78;
    rows.push_back({ShellItem::make(folder, testing::native("old/M\xC3\xBC.txt"), info, {}), 1, true});
    const ResultsContent content{u"System.Size", true, false, *ItemBlock::check(*buildItemBlock(rows)), {1, 1}, {}};
    EXPECT_EQ(encodeResults(content), shown);
}

TEST(ResultsContent, AFileIsWholeOrLacksItsDefinition)
{
    const ResultsContent content = sound();
    Bytes whole = encodeResults(content);
    const Layout layout(content);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto cut = decoded(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        ASSERT_EQ(cut.ok(), length >= layout.definition) << length;
        if (cut)
            EXPECT_TRUE(cut->definition.empty() && cut->groups == content.groups) << length;
        else
            EXPECT_THAT(cut.error().detail, HasSubstr(" ends after ")) << length;
    }
    const Bytes sound = whole;
    whole.push_back(std::byte{1});  // what follows is nobody's
    EXPECT_EQ(encodeResults(*decoded(whole)), sound);
}

TEST(ResultsContent, DamageIsTold)
{
    const ResultsContent content = sound();
    const Bytes whole = encodeResults(content);
    const Layout at(content);
    const std::size_t lists = at.block + 4 * 5;
    const std::size_t folder = testing::pathsArePosix ? 9 : 11;  // bytes of its name
    const std::size_t first = lists + 42 + folder + 2;           // the list of "a"
    const std::size_t second = first + 42 + 1 + 2;               // that of the entry
    const auto room = static_cast<std::uint32_t>(at.groups - at.block);
    struct Damage {
        std::size_t at;
        std::uint64_t value;
        std::size_t size;
        const char* told;
    };
    const Damage table[] = {
        {0, 'J', 1, "not a scan file"},
        {4, 8, 4, "no header"},
        {4, 61, 4, "no header"},
        {4, 0xFFFFFFFE, 4, "no header"},
        {4, (1u << 20) + 2, 4, "no header"},
        {4, 1u << 20, 4, "header ends after"},
        {at.view - 2, 'x', 2, "list of columns"},
        {10, 0, 2, "list of columns"},
        {at.view, 2, 2, "view flags"},
        {at.view + 2, 2, 2, "view flags"},
        {at.view + 4, 0, 4, "no item block"},
        {at.view + 4, 100, 4, "no item block"},
        {at.view + 4, 0x4000000, 4, "no item block"},
        {at.view + 4, 0xFFFFFFFF, 4, "no item block"},
        {at.view + 4, largestItemBlock, 4, "item block ends after"},
        {at.view + 4, smallestItemBlock, 4, "beyond the block"},
        {at.view + 4, room - 1, 4, "has no end"},
        {at.view + 4, room + 4, 4, "goes on behind its last row"},
        {at.block, 0, 4, "cannot hold 0 rows"},
        {at.block, 2, 4, "begins at"},
        {at.block, 4, 4, "begins at"},
        {at.block, 0xFFFFFFFF, 4, "cannot hold"},
        {at.block, 0x3FFFFFFF, 4, "cannot hold"},
        {at.block + 4, 0, 4, "begins at"},                 // backwards
        {at.block + 8, lists - at.block, 4, "begins at"},  // overlapping the folder
        {at.block + 12, first - at.block, 4, "begins at"},
        {at.block + 16, room, 4, "begins at"},  // beyond the end
        {at.block + 16, 0xFFFFFFFF, 4, "begins at"},
        {lists, 0, 2, "begins at"},  // no folder, and then no list where one should be
        {lists, 42, 2, "too short"},
        {lists, 1, 2, "too short"},
        {lists, 0xFFFF, 2, "beyond the block"},
        {lists + 2, static_cast<std::uint64_t>(StoredKind::file), 1, "names no folder"},
        {lists + 42, 0x7878, 2, "name that no file has"},  // not absolute
        {lists + 42 + folder - 1, '/', 1, "name that no file has"},
        {first, 0, 2, "names no file"},
        {first + 2, 6, 1, "unknown kind"},
        {first + 2, static_cast<std::uint64_t>(StoredKind::entry), 1, "do not follow"},
        {first + 10, 1ull << 63, 8, "a size or a time"},
        {first + 18, 1ull << 63, 8, "a size or a time"},
        {first + 18, (1ull << 62) + 1, 8, "a size or a time"},
        {first + 42, '.', 1, "name that no file has"},
        {first + 42, '/', 1, "name that no file has"},
        {first + 42, 0, 1, "name that no file has"},
        {second + 2, static_cast<std::uint64_t>(StoredKind::file), 1, "do not follow"},
        {second + 2, static_cast<std::uint64_t>(StoredKind::folder), 1, "do not follow"},
        {second + 42, 0x2E2E, 2, ""},  // "..zip" is a name
        {second + 42 + 1, '/', 1, ""},
        {second + 42 + 5 + 42, '.', 1, "name that no file has"},
        {at.groups, 0, 4, "is in group 0"},
        {at.groups + 8, 0x80000000, 4, "row 3 is in group"},
        {at.definition, 0, 4, ""},
        {at.definition, largestNodeBlob, 4, ""},
        {at.definition, 0xFFFFFFFF, 4, ""},
    };
    for (const Damage& damage : table) {
        const Bytes bytes = changed(whole, damage.at, damage.value, damage.size);
        const std::string told = fault(bytes);
        EXPECT_THAT(told, HasSubstr(damage.told)) << damage.at << " = " << damage.value;
        EXPECT_EQ(told.empty(), *damage.told == '\0') << damage.at << " = " << damage.value << ": " << told;
    }
}

TEST(ResultsContent, DefinitionsAreTakenUpToTheirLimit)
{
    ResultsContent content = sound();
    for (const std::size_t length : {std::size_t{1}, largestNodeBlob, largestNodeBlob + 1, std::size_t{200'000}}) {
        content.definition.assign(length, std::byte{1});
        const auto again = decoded(encodeResults(content));
        ASSERT_TRUE(again) << length;
        EXPECT_EQ(again->definition.size(), length <= largestNodeBlob ? length : 0);
        EXPECT_EQ(again->groups, content.groups);
    }
}

TEST(ResultsContent, ReadsInPiecesAndCanBeCancelled)
{
    struct Watched : BytesReader {
        using BytesReader::BytesReader;
        Result<std::size_t> read(std::span<std::byte> buffer) override
        {
            largest = std::max(largest, buffer.size());
            if (++reads == stopAt)
                cancel.cancel();
            return BytesReader::read(buffer);
        }
        CancelFlag cancel;
        std::size_t largest = 0;
        int reads = 0, stopAt = 0;
    };
    Bytes huge = changed(encodeResults(sound()), Layout(sound()).view + 4, largestItemBlock, 4);
    huge.resize(3 << 20);
    for (const int stopAt : {0, 3}) {
        Watched reader(huge);
        reader.stopAt = stopAt;
        const auto content = decodeResults(reader, reader.cancel);
        ASSERT_FALSE(content);
        EXPECT_EQ(content.error().kind, stopAt == 0 ? ErrorKind::invalid : ErrorKind::cancelled);
        EXPECT_EQ(reader.largest, 1u << 20);
        EXPECT_TRUE(stopAt == 0 || reader.reads == stopAt);
    }
}

}  // namespace
}  // namespace kelvane
