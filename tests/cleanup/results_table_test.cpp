#include "cleanup/results_table.h"

#include <gmock/gmock.h>

#include <random>

#include "base/utf.h"
#include "support/results_list.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using Cells = std::vector<std::u16string>;
using Rows = std::vector<Cells>;

// As RFC 4180 reads a file.
Rows parseCsv(const std::string& text)
{
    Rows rows(1);
    std::string cell;
    bool quoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '"') {
            if (quoted && at + 1 < text.size() && text[at + 1] == '"')
                cell += text[++at];
            else
                quoted = !quoted;
        } else if (!quoted && (text[at] == ',' || text[at] == '\r')) {
            rows.back().push_back(toUtf16(std::exchange(cell, {})));
            if (text[at] == '\r' && text.at(++at) == '\n')
                rows.emplace_back();
        } else {
            cell += text[at];
        }
    }
    EXPECT_TRUE(rows.back().empty() && cell.empty() && !quoted) << "the last row is ended";
    rows.pop_back();
    return rows;
}

std::string table(TableMode mode, Formulas formulas, const Cells& titles, const Rows& rows,
                  std::string_view path = "/x")
{
    TableBuilder builder(mode, formulas, titles);
    for (const Cells& row : rows)
        builder.add(row, path);
    return builder.take();
}

TEST(ResultsTable, QuotesWhatNeedsItAndNothingElse)
{
    const auto line = [](const Cells& row) { return table(TableMode::csv, Formulas::kept, {}, {row}); };
    EXPECT_EQ(line({u"plain name", u"a;b", u"1.5 KB"}), "plain name,a;b,1.5 KB\r\n");
    EXPECT_EQ(line({u"a,b", u"say \"ä\"", u"two\nlines", u""}), "\"a,b\",\"say \"\"ä\"\"\",\"two\nlines\",\r\n");
    EXPECT_EQ(line({u"=1+1", u"-n"}), "=1+1,-n\r\n");
    EXPECT_EQ(table(TableMode::csv, Formulas::kept, {u"Name"}, {}), "") << "no rows: not even titles";
}

TEST(ResultsTable, EveryTextComesBackFromCsv)
{
    std::mt19937 random(4);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    constexpr std::u16string_view letters = u"ab,\"\r\n\t =ä;";
    Rows rows;
    for (int number = 0; number < 300; ++number) {
        Cells& row = rows.emplace_back(3);
        for (std::u16string& cell : row)
            for (std::size_t length = below(6); length > 0; --length)
                cell += letters[below(letters.size())];
    }
    const std::string text = table(TableMode::csv, Formulas::kept, rows.front(), {rows.begin() + 1, rows.end()});
    EXPECT_EQ(parseCsv(text), rows);
}

TEST(ResultsTable, TabsAndBreaksInCellsMakeNoCellsOfTheirOwn)
{
    EXPECT_EQ(table(TableMode::tabs, Formulas::defused, {u"N\tame", u"Size"}, {{u"a\r\nb\tc", u"\"1,5\""}}, "/\xFF"),
              "N ame\tSize\r\na  b c\t\"1,5\"\r\n");
}

TEST(ResultsTable, FormulasAreDefusedAndNumbersAreNone)
{
    for (const char16_t* formula : {u"=1+1", u"+a", u"-a", u"@sum", u"\tx", u"\rx", u"-", u"=cmd|' /C calc'!A0"}) {
        const Rows rows = parseCsv(table(TableMode::csv, Formulas::defused, {u"Name"}, {{u"safe"}, {formula}}, "/=1"));
        EXPECT_THAT(rows, ElementsAre(Cells{u"Name", u"path_bytes"}, Cells{u"safe", u""},
                                      Cells{u"'" + std::u16string(formula), u"/%3D1"}));
    }
    for (const char16_t* harmless : {u"-12.5", u"+3", u"a=b", u"'=1", u""})
        EXPECT_THAT(parseCsv(table(TableMode::csv, Formulas::defused, {u"N"}, {{harmless, u"x"}})).back(),
                    ElementsAre(harmless, u"x"));
}

TEST(ResultsTable, NamesThatAreNoTextTellTheirBytes)
{
    TableBuilder builder(TableMode::csv, Formulas::kept, Cells{u"Name", u"Size"});
    builder.add(Cells{u"ä", u"1"}, "/t/ä");
    builder.add(Cells{toUtf16KeepingBytes("a\xFF,b"), u"2"}, "/t/a\xFF,b");
    builder.add(Cells{u"c", u"3"}, "/t/c");
    EXPECT_EQ(builder.take(), "Name,Size,path_bytes\r\nä,1,\r\n\"a\xEF\xBF\xBD,b\",2,/t/a%FF%2Cb\r\nc,3,\r\n");
}

TEST(ResultsTable, HasTheSelectedRowsInTheOrderOfView)
{
    testing::ResultsList list({"/b,1", "/a", "/c", "/d"});
    list.model.mark(list.ids({"/b,1", "/c", "/d"}), Mark::selected, true);
    list.model.hide(list.ids({"/d"}), hiding_flag::filter);
    list.model.setOrder({list.model.order().rbegin(), list.model.order().rend()}, true);
    EXPECT_EQ(tableOfSelection(list.model, list.view({u"Name", u"Column"}), TableMode::csv, Formulas::kept),
              "Name,Column\r\nc 0,c 1\r\n\"b,1 0\",\"b,1 1\"\r\n");
    EXPECT_EQ(tableOfSelection(list.model, list.view({}), TableMode::tabs, Formulas::kept), "c 0\r\nb,1 0\r\n")
        << "a view without columns";
    list.model.clearSelection();
    EXPECT_EQ(tableOfSelection(list.model, list.view({u"Name"}), TableMode::csv, Formulas::kept), "");
}

TEST(ResultsTable, ShowsWhatTheColumnsOfTheListShow)
{
    testing::ScanWorld world;
    world.files.addFile("/t/a,b", std::string(20'480, 'x'));
    ResultsModel model;
    model.add(*world.shell->parse(testing::native("/t/a,b")), 1, false);
    model.mark(std::vector{model.itemAt(0)}, Mark::selected, true);
    const auto shown = [&](std::string_view columns) {
        const TableView view = viewOfColumns(world.catalogue.parseList(columns), world.properties);
        return tableOfSelection(model, view, TableMode::csv, Formulas::kept);
    };
    EXPECT_EQ(shown("System.Size,System.Title"), "Size,Title\r\n20.0 KB,\r\n");
    EXPECT_EQ(shown(""), "\"a,b\"\r\n");
}

}  // namespace
}  // namespace kelvane
