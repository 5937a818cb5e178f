#include "cli/csv.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kelvane {
namespace {

std::string row(const std::vector<std::string>& cells)
{
    std::ostringstream out;
    writeCsvRow(cells, out);
    return out.str();
}

TEST(Csv, CellsAreQuotedWhereTheyMustBe)
{
    EXPECT_EQ(row({"a", "", "b c"}), "a,,b c\r\n");
    EXPECT_EQ(row({"a,b", "say \"hi\"", "two\nlines", "r\r"}), "\"a,b\",\"say \"\"hi\"\"\",\"two\nlines\",\"r\r\"\r\n");
}

}  // namespace
}  // namespace kelvane
