// How other programs are asked to open a file on Windows.
#include "platform/windows/adapters.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

TEST(WindowsProcesses, ToldWhyNoProgramOpensAFileThePersonReadsNoPlaceholder)
{
    const testing::TempTree tree;
    const auto processes = makeWindowsProcesses();
    const Status opened = processes->openFile(tree.write("table.of-no-program", "x"));
    ASSERT_FALSE(opened.ok());
    EXPECT_FALSE(opened.error().detail.empty());
    EXPECT_EQ(opened.error().detail.find('%'), std::string::npos) << opened.error().detail;

    EXPECT_EQ(processes->openFile(tree.path("missing.txt")).error().kind, ErrorKind::notFound);
    EXPECT_EQ(processes->openLink("C:\\Windows\\notepad.exe").error().kind, ErrorKind::invalid)
        << "a link starts no program";
}

}  // namespace
}  // namespace kelvane
