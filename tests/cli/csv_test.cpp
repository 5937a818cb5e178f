#include "cli/csv.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kelvane {
namespace {

TEST(Csv, CellsAreQuotedWhereTheyMustBe)
{
    std::ostringstream out;
    writeCsvRow({"a", "", "b c"}, out);
    writeCsvRow({"a,b", "say \"hi\"", "two\nlines", "r\r"}, out);
    EXPECT_EQ(out.str(), "a,,b c\r\n\"a,b\",\"say \"\"hi\"\"\",\"two\nlines\",\"r\r\"\r\n");
}

}  // namespace
}  // namespace kelvane
