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
            EXPECT_TRUE(model.add(file, file.group.value == 2 ? add_flag::approximate : 0));
    }
    ASSERT_EQ(model.items().size(), 4u);
    ASSERT_EQ(model.groups().size(), 2u);
    const ResultGroup& second = *model.groups()[1];
    EXPECT_EQ(second.number, 2u);
    EXPECT_TRUE(second.approximate);
    EXPECT_FALSE(model.groups()[0]->approximate);
    ASSERT_EQ(second.items.size(), 2u);
    EXPECT_EQ(second.items[1], model.items()[3].get());
    EXPECT_EQ(second.items[1]->file->path(), "/d") << "items outlive the candidates";
    EXPECT_EQ(second.items[1]->group, &second);
}

}  // namespace
}  // namespace kelvane
