#include "results/results_model.h"

#include <gtest/gtest.h>

#include "support/paths.h"

namespace kelvane {
namespace {

Candidate candidate(const char* path, std::int32_t group)
{
    Candidate file(ShellItem::make(nullptr, testing::native(path), {}, ShellItem::Place::fileSystem));
    file.group.value = group;
    return file;
}

TEST(ResultsModel, KeepsTheGroupsAsTheyAreHandedOver)
{
    ResultsModel model;
    {
        const Candidate files[] = {candidate("/a", 1), candidate("/b", 1), candidate("/c", 2), candidate("/d", 2)};
        for (const Candidate& file : files)
            EXPECT_TRUE(model.add(file, file.group.value == 2 ? add_flag::approximate : 0, {}));
    }
    ASSERT_EQ(model.rowCount(), 4u);
    ASSERT_EQ(model.groupCount(), 2u);
    const ResultGroup& second = model.groupOf(model.itemAt(3));
    EXPECT_EQ(second.number, 2u);
    EXPECT_TRUE(second.approximate);
    EXPECT_FALSE(model.groupOf(model.itemAt(0)).approximate);
    ASSERT_EQ(second.members.size(), 2u);
    EXPECT_EQ(second.members[1], model.itemAt(3));
    EXPECT_EQ(model.item(model.itemAt(3)).file.item().path(), "/d") << "items outlive the candidates";
    EXPECT_EQ(model.runAt(1), (RowRange{0, 2}));
}

}  // namespace
}  // namespace kelvane
