#include "engine/content_classes.h"

#include <gtest/gtest.h>

#include <set>

#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

constexpr std::uint32_t alone = ContentClassifier::alone;

class ContentClasses : public ::testing::Test {
protected:
    void add(const std::string& contents)
    {
        const std::string path = "/" + std::to_string(items.size());
        world.files.addFile(path, contents);
        items.push_back(*world.shell->parse(testing::native(path)));
    }

    std::vector<std::uint32_t> classify(const ContentBudget& budget = {})
    {
        skipped.clear();
        ContentClassifier classifier(
            *world.shell, world.options, cancel, budget,
            [&](const ShellItem& item, const Error&) { skipped.insert(testing::posix(item.fullName())); });
        std::vector<const ShellItem*> pointers;
        for (const auto& item : items)
            pointers.push_back(item.get());
        std::vector<std::uint32_t> classes(items.size());
        const auto compared = comparedRanges(items[0]->info().size, world.options.hugeFile);
        EXPECT_TRUE(classifier.classify(pointers, compared, classes));
        return classes;
    }

    // The most files that were open at once.
    std::ptrdiff_t mostOpen()
    {
        std::ptrdiff_t open = 0, most = 0;
        for (const std::string& access : world.files.accesses()) {
            open += access.starts_with("open ");
            open -= access.starts_with("info ");  // the last question before a handle is let go
            most = std::max(most, open);
        }
        return most;
    }

    testing::ScanWorld world;
    CancelFlag cancel;
    std::vector<Ref<ShellItem>> items;
    std::set<std::string> skipped;
};

TEST_F(ContentClasses, OnlySoManyFilesStayOpen)
{
    for (int i = 0; i < 30; ++i)
        add(std::string(1000, 'x'));
    const auto classes = classify({16, 2, 64, 4096, 5});
    EXPECT_EQ(std::set(classes.begin(), classes.end()).size(), 1u);
    EXPECT_LE(mostOpen(), 6);
    EXPECT_GE(mostOpen(), 2);
}

TEST_F(ContentClasses, RunningOutOfHandlesGivesKeptOnesBack)
{
    for (int i = 0; i < 6; ++i)
        add(std::string(1000, 'x'));
    int opens = 0;
    world.files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
        if (operation == "open" && ++opens % 4 == 0)
            return Error{ErrorKind::tooManyOpen, 24, "too many"};
        return std::nullopt;
    });
    const auto classes = classify({16, 2, 64, 4096, 100});
    EXPECT_EQ(std::set(classes.begin(), classes.end()), std::set{classes[0]});
    EXPECT_NE(classes[0], alone);
    EXPECT_TRUE(skipped.empty());
}

TEST_F(ContentClasses, AFileThatChangesWhileReadIsAloneAndReported)
{
    for (int i = 0; i < 3; ++i)
        add(std::string(1000, 'x'));
    world.files.setHook([&, done = std::make_shared<bool>()](const std::string& operation, const std::string& path) {
        if (operation == "read" && path == "/0" && !std::exchange(*done, true))
            world.files.setContents("/0", std::string(1000, 'x'));
        return std::optional<Error>();
    });
    const auto classes = classify();
    EXPECT_EQ(classes[0], alone) << "though its bytes are the same";
    EXPECT_EQ(classes[1], classes[2]);
    EXPECT_NE(classes[1], alone);
    EXPECT_EQ(skipped, std::set<std::string>{"/0"});
}

}  // namespace
}  // namespace kelvane
