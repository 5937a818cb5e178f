// What every version of the port of file operations promises, on real files of this system.
#include <functional>

#include "platform/file_operations_contract.h"
#include "support/real_files.h"

namespace kelvane {
namespace {

using testing::native;
using testing::RecordingSink;
using testing::TrashWorld;

class FileOperationsContract : public ::testing::Test {
protected:
    RemovalItem item(const std::string& name, Removal removal) const
    {
        return {world_.tree.path(name), identity(name), removal};
    }

    FileIdentity identity(const std::string& name) const
    {
        const auto details = world_.platform->files().details(world_.tree.path(name), Links::asThemselves);
        return details ? details->identity : FileIdentity{};
    }

    bool exists(const std::string& name) const { return identity(name).known(); }
    bool isThere(const std::filesystem::path& path) const
    {
        return world_.platform->files().details(path, Links::asThemselves).ok();
    }

    RemovalOutcome removeOne(const RemovalItem& one)
    {
        RecordingSink sink;
        EXPECT_TRUE(operations().remove(std::span(&one, 1), sink, cancel_).ok);
        EXPECT_EQ(sink.outcomes.size(), 1u);
        return sink.outcomes.at(0);
    }

    FileOperations& operations() { return world_.platform->fileOperations(); }

    bool hasTrash() { return operations().canTrash(world_.tree.path("x")).ok(); }

    TrashWorld world_;
    CancelFlag cancel_;
};

TEST_F(FileOperationsContract, WhatGoesForGoodIsGone)
{
    world_.tree.write("file", "x");
    world_.tree.folder("empty");
    world_.tree.write("full/file", "x");
    std::filesystem::permissions(world_.tree.path("file"), std::filesystem::perms::owner_read);

    for (const char* name : {"file", "empty"}) {
        const RemovalOutcome outcome = removeOne(item(name, Removal::forGood));
        EXPECT_EQ(outcome.code, removal_code::done) << name;
        EXPECT_FALSE(outcome.error || outcome.trashed) << name;
        EXPECT_FALSE(exists(name)) << name;
    }
    const RemovalOutcome full = removeOne(item("full", Removal::forGood));
    EXPECT_LT(full.code, 0);
    EXPECT_TRUE(full.error.has_value());
    EXPECT_TRUE(exists("full/file"));
}

TEST_F(FileOperationsContract, WhatIsNotTheExpectedFileStays)
{
    for (const Removal removal : {Removal::toTrash, Removal::forGood}) {
        world_.tree.write("file", "the one that was seen");
        RemovalItem seen = item("file", removal);
        world_.tree.write("other", "new");
        std::filesystem::rename(world_.tree.path("other"), world_.tree.path("file"));

        const RemovalOutcome outcome = removeOne(seen);

        EXPECT_LT(outcome.code, 0);
        ASSERT_TRUE(outcome.error.has_value());
        EXPECT_EQ(outcome.error->kind, ErrorKind::changed);
        EXPECT_EQ(world_.tree.read("file"), "new");

        seen.path = world_.tree.path("none");
        EXPECT_EQ(removeOne(seen).error->kind, ErrorKind::notFound);
    }
}

TEST_F(FileOperationsContract, WhatGoesToTheTrashComesBack)
{
    if (!hasTrash())
        GTEST_SKIP() << "no trash for the temporary folder";
    world_.tree.write("file", "contents");
    world_.tree.write("folder/deep/file", "deep");
    for (const std::string name : {"file", "folder"}) {
        const FileIdentity before = identity(name);
        const RemovalOutcome outcome = removeOne(item(name, Removal::toTrash));
        EXPECT_EQ(outcome.code, removal_code::done) << (outcome.error ? outcome.error->detail : "");
        EXPECT_FALSE(exists(name));
        ASSERT_TRUE(outcome.trashed.has_value());
        EXPECT_TRUE(operations().isInTrash(*outcome.trashed));
        EXPECT_TRUE(isThere(*outcome.trashed));
        EXPECT_TRUE(operations().forget(*outcome.trashed).ok()) << "must leave alone what is there";

        world_.tree.write(name, "something new");
        EXPECT_EQ(operations().restore(*outcome.trashed, world_.tree.path(name)).error().kind, ErrorKind::exists);
        EXPECT_EQ(world_.tree.read(name), "something new");
        world_.tree.remove(name);
        EXPECT_TRUE(operations().restore(*outcome.trashed, world_.tree.path(name)).ok());
        EXPECT_EQ(identity(name), before);
        EXPECT_FALSE(isThere(*outcome.trashed));
        EXPECT_EQ(operations().restore(*outcome.trashed, world_.tree.path(name + "2")).error().kind,
                  ErrorKind::notFound);
    }
    EXPECT_EQ(world_.tree.read("file"), "contents");
    EXPECT_EQ(world_.tree.read("folder/deep/file"), "deep");
}

TEST_F(FileOperationsContract, ManyFilesOfOneNameAllFindAPlace)
{
    if (!hasTrash())
        GTEST_SKIP() << "no trash for the temporary folder";
    std::vector<RemovalItem> items;
    for (int i = 0; i < 30; ++i) {
        const std::string name = "d" + std::to_string(i) + "/same.txt";
        world_.tree.write(name, std::to_string(i));
        items.push_back(item(name, Removal::toTrash));
    }
    RecordingSink sink;
    EXPECT_TRUE(operations().remove(items, sink, cancel_).ok);

    ASSERT_EQ(sink.outcomes.size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        ASSERT_TRUE(sink.outcomes[i].trashed.has_value());
        EXPECT_TRUE(operations().restore(*sink.outcomes[i].trashed, items[i].path).ok());
        EXPECT_EQ(world_.tree.read("d" + std::to_string(i) + "/same.txt"), std::to_string(i));
    }
}

TEST_F(FileOperationsContract, TheSinkDecidesItemByItem)
{
    std::vector<RemovalItem> items;
    for (const char* name : {"a", "b", "c", "d"}) {
        world_.tree.write(name, name);
        items.push_back(item(name, Removal::forGood));
    }
    RecordingSink sink;
    sink.allow = [](std::size_t i) { return i != 1; };
    sink.ended = [&](std::size_t i) {
        if (i == 2)
            cancel_.cancel();
    };

    const BatchOutcome outcome = operations().remove(items, sink, cancel_);

    for (const char* name : {"b", "none", "none/deeper"})
        EXPECT_FALSE(operations().isInTrash(world_.tree.path(name))) << name;
    EXPECT_TRUE(outcome.aborted);
    EXPECT_EQ(sink.heard, (std::vector<std::size_t>{0, 2}));
    EXPECT_FALSE(exists("a") || exists("c"));
    EXPECT_TRUE(exists("b") && exists("d"));
}

TEST_F(FileOperationsContract, NothingMovesWhenItsPlaceCannotBeWrittenDown)
{
    if (!hasTrash())
        GTEST_SKIP() << "no trash for the temporary folder";
    world_.tree.write("file", "x");
    const RemovalItem one = item("file", Removal::toTrash);
    RecordingSink sink;
    sink.place = [](const std::filesystem::path&) { return Status(Error{ErrorKind::io, 0, "the disk is full"}); };

    static_cast<void>(operations().remove(std::span(&one, 1), sink, cancel_));

    if (sink.places.empty())
        GTEST_SKIP() << "the place in the trash is not known ahead here";
    EXPECT_EQ(sink.outcomes.at(0).error->detail, "the disk is full");
    EXPECT_LT(sink.outcomes.at(0).code, 0);
    EXPECT_TRUE(exists("file"));
    EXPECT_FALSE(isThere(sink.places.at(0)));
}

TEST_F(FileOperationsContract, UnusualNamesGoAndComeBack)
{
    if (!hasTrash())
        GTEST_SKIP() << "no trash for the temporary folder";
    for (const std::string& name : testing::unusualNames()) {
        world_.tree.write("u/" + name, name);
        const RemovalOutcome outcome = removeOne(item("u/" + name, Removal::toTrash));
        ASSERT_TRUE(outcome.trashed.has_value()) << name << (outcome.error ? outcome.error->detail : "");
        EXPECT_TRUE(operations().restore(*outcome.trashed, world_.tree.path("u/" + name)).ok()) << name;
        EXPECT_EQ(world_.tree.read("u/" + name), name);
    }
}

}  // namespace
}  // namespace kelvane
