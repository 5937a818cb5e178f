#include "cleanup/link_pass.h"

#include <gtest/gtest.h>

#include "cleanup/link_volumes.h"
#include "cleanup/pass_world.h"
#include "support/faulty_held_files.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::PassWorld;

struct LinkWorld : PassWorld {
    // "a" is kept, and every other one of these becomes a link to it.
    explicit LinkWorld(const std::string& items = "b", LinkKind kind = LinkKind::hard)
    {
        clock.milliseconds = 0xBEEF;
        write("a");
        for (const char item : items) {
            write({item});
            link({item}, "a", kind);
        }
    }
};

// Makes what it is asked for, like an administrator's process.
class FakeService final : public SymbolicLinkService {
public:
    Status make(const fs::path& link, const fs::path& target) override
    {
        ++calls;
        if (answer)
            fs::create_symlink(target, link);
        return answer;
    }
    Status answer;
    int calls = 0;
};

TEST(LinkPass, PutsHardLinksInPlaceAndTellsTheJournalFirst)
{
    LinkWorld world("bc");
    const PassOutcome outcome = world.linkAll();
    EXPECT_EQ(world.told, "[a] b:done hard>a c:done hard>a ");
    EXPECT_TRUE(world.areOneFile("a", "b") && world.areOneFile("a", "c"));
    EXPECT_EQ(world.left(), "a,b,c,trash");
    EXPECT_EQ(world.journal.told(), "intend b; intend c; flush; done b hard; done c hard");
    EXPECT_EQ(outcome.succeeded, 2u);
    EXPECT_EQ(outcome.freed, 8u);
    EXPECT_EQ(outcome.cancel, CancelState::running);
    EXPECT_EQ(world.progressed, std::pair(std::uint64_t{2}, std::uint64_t{8}));
    const JournalIntent& intent = world.journal.intents.front();
    EXPECT_EQ(testing::posix(intent.temporary), "bbeef");
    EXPECT_EQ(intent.item, world.tree.path("b"));
    EXPECT_EQ(intent.kept, world.tree.path("a"));
    EXPECT_NE(intent.metadata.modified, 0);
    EXPECT_TRUE(world.questions.asked.empty());
}

TEST(LinkPass, FindsAFreeTemporaryName)
{
    LinkWorld world;
    world.tree.write("bbeef", "somebody's");
    const std::string longest(testing::pathsArePosix ? 255 : 20, 'n');  // elsewhere whole paths have a limit
    world.write(longest);
    world.link(longest, "a");
    world.linkAll();
    EXPECT_EQ(world.outcome.succeeded, 2u) << world.told;
    EXPECT_EQ(testing::posix(world.journal.intents[0].temporary), "bbef0");
    EXPECT_LE(world.journal.intents[1].temporary.size(), 255u);
    EXPECT_EQ(world.tree.read("bbeef"), "somebody's");
    EXPECT_TRUE(world.areOneFile("a", longest));
}

TEST(LinkPass, MakesSymbolicLinks)
{
    if (!testing::TempTree::canLink())
        GTEST_SKIP() << "no symbolic links here";
    LinkWorld world("b", LinkKind::symbolic);
    world.linkAll();
    EXPECT_EQ(world.told, "[a] b:done symbolic>a ");
    EXPECT_EQ(fs::read_symlink(world.tree.path("b")), world.tree.path("a"));
    EXPECT_EQ(world.left(), "a,b,trash");
    EXPECT_EQ(world.journal.told(), "intend b; flush; done b symbolic");
}

struct FaultRow {
    bool exchanges;
    testing::Fault fault;
};

class FailingLinkPass : public ::testing::TestWithParam<FaultRow> {};

// Without an exchange of names, too, and whatever step fails, the item stays or is a finished link.
TEST_P(FailingLinkPass, PutsBackWhatFails)
{
    testing::FaultPlan plan;
    plan.canExchange = GetParam().exchanges;
    for (int at = 1;; ++at) {
        LinkWorld world;
        testing::FaultyHeldFiles faulty(*world.held, plan);
        world.held = &faulty;
        plan.fail(GetParam().fault, at);
        world.linkAll();
        if (!plan.failed()) {
            EXPECT_GT(at, 8);
            EXPECT_EQ(world.told, "[a] b:done hard>a ");
            EXPECT_EQ(world.left(), "a,b,trash");
            break;
        }
        EXPECT_EQ(world.tree.read("b"), "same");
        EXPECT_EQ(world.areOneFile("a", "b"), world.outcome.succeeded == 1) << plan.struck();
        EXPECT_EQ(world.outcome.undecided, 0u) << plan.struck();
        EXPECT_EQ(world.left(), "a,b,trash") << plan.struck() << " " << at;
        EXPECT_EQ(world.questions.asked.size(), world.outcome.errors) << plan.struck();
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingLinkPass,
                         ::testing::Values(FaultRow{true, testing::Fault::once}, FaultRow{false, testing::Fault::once},
                                           FaultRow{true, testing::Fault::afterwards},
                                           FaultRow{false, testing::Fault::afterwards}));

TEST(LinkPass, StartsANewOriginalWhereAFileHasAllItsNames)
{
    LinkWorld world("bcdef");
    world.write("x", "same", 2);
    world.write("y", "same", 2);
    world.link("y", "x");
    testing::FaultPlan plan;
    // Without an exchange of names every link needs a second one for a moment.
    plan.namesLeft = testing::pathsArePosix ? 2 : 4;
    testing::FaultyHeldFiles faulty(*world.held, plan);
    world.held = &faulty;
    world.afterItem = [&](const std::string& item) {
        if (item == "d")
            plan.namesLeft = -1;
    };
    world.linkAll();
    EXPECT_EQ(world.told, "[a] b:done hard>a c:done hard>a d:newOriginal [d] e:done hard>d f:done hard>d "
                          "[x] y:done hard>x ");
    EXPECT_TRUE(world.areOneFile("d", "f"));
    EXPECT_FALSE(world.areOneFile("a", "d"));
    EXPECT_EQ(world.outcome.errors, 0u);
    EXPECT_TRUE(world.questions.asked.empty());
}

TEST(LinkPass, AsksToQuitAfterAProblemButNotAfterAGuard)
{
    for (const bool quits : {false, true}) {
        LinkWorld world("bcde");
        world.questions.quits = quits;
        world.tree.write("b", "other and longer");
        world.options.batch = 1;
        struct Broken final : HeldFiles {
            explicit Broken(HeldFiles& inner) : real(inner) {}
            Result<std::unique_ptr<HeldFolder>> openFolder(const fs::path& folder) override
            {
                if (++opened == 2)
                    return Error{ErrorKind::io, 5, "the disk is broken"};
                return real.openFolder(folder);
            }
            bool isTooManyLinks(const Error& error) const override { return real.isTooManyLinks(error); }
            HeldFiles& real;
            int opened = 0;
        } broken(world.platform->heldFiles());
        world.held = &broken;
        world.linkAll();
        EXPECT_EQ(world.told, quits ? "[a] b:failed changed c:failed system d:notReached e:notReached "
                                    : "[a] b:failed changed c:failed system d:done hard>a e:done hard>a ");
        ASSERT_EQ(world.questions.asked.size(), 1u);
        EXPECT_EQ(world.questions.asked[0], "There was a problem creating this file link:\n" +
                                                toUtf8(displayFromNative(world.tree.path("c").native())) +
                                                "\nthe disk is broken\nIt is likely that all remaining items will "
                                                "have the same problem.\nShall we quit the operation now?");
        EXPECT_EQ(world.outcome.cancel, quits ? CancelState::linkRunSettled : CancelState::running);
    }
}

TEST(LinkPass, StopsOnlyWhenThePersonSaysSo)
{
    for (const bool stops : {true, false}) {
        LinkWorld world("bcd");
        world.questions.stops = stops;
        world.questions.carryOn = [&] { world.cancel.reset(); };
        world.afterItem = [&](const std::string& item) {
            if (item == "b")
                world.cancel.cancel();
        };
        world.linkAll();
        EXPECT_EQ(world.questions.asked, std::vector<std::string>{"Do you want to stop the clean-up operation?"});
        EXPECT_EQ(world.told, stops ? "[a] b:done hard>a c:notReached d:notReached "
                                    : "[a] b:done hard>a c:done hard>a d:done hard>a ");
        EXPECT_EQ(world.outcome.cancel, stops ? CancelState::linkRunSettled : CancelState::running);
        if (stops) {
            EXPECT_EQ(world.journal.told(), "intend b; intend c; intend d; flush; done b hard; notDone c; notDone d");
        }
        EXPECT_EQ(world.left(), "a,b,c,d,trash");
    }
}

TEST(LinkPass, DoesNothingThatTheJournalCannotTell)
{
    const struct {
        const char *fails, *told;
    } rows[] = {
        {"intend c", "[a] b:failed journal c:notReached d:notReached "},
        {"flush", "[a] b:failed journal c:notReached d:notReached "},
        {"done b", "[a] b:done hard>a c:notReached d:notReached "},
    };
    for (const auto& row : rows) {
        LinkWorld world("bcd");
        world.journal.failsAt = row.fails;
        world.linkAll();
        EXPECT_EQ(world.told, row.told);
        EXPECT_TRUE(world.outcome.journalError);
        EXPECT_EQ(world.left(), "a,b,c,d,trash");
        EXPECT_FALSE(world.areOneFile("a", "c"));
    }
}

TEST(LinkPass, SaysWhenNothingCouldBeLinked)
{
    LinkWorld world;
    world.tree.write("b", "different");
    world.linkAll();
    EXPECT_EQ(world.told, "[a] b:failed changed ");
    EXPECT_EQ(world.questions.statuses, std::vector<std::string>{"Linking is possible only for local filesystem & "
                                                                 "size-identical items"});
}

// A system on which only an administrator makes symbolic links.
struct UnprivilegedFiles final : HeldFiles {
    explicit UnprivilegedFiles(HeldFiles& inner) : real(inner) {}
    Result<std::unique_ptr<HeldFolder>> openFolder(const fs::path& folder) override;
    bool isTooManyLinks(const Error& error) const override { return real.isTooManyLinks(error); }
    HeldFiles& real;
};

struct UnprivilegedFolder final : HeldFolder {
    explicit UnprivilegedFolder(std::unique_ptr<HeldFolder> folder) : real(std::move(folder)) {}
    const fs::path& path() const override { return real->path(); }
    Result<FileDetails> look(NativeView name) const override { return real->look(name); }
    Result<std::unique_ptr<HeldFile>> open(NativeView name) override { return real->open(name); }
    Result<std::unique_ptr<NewFile>> create(NativeView name) override { return real->create(name); }
    Status hardLink(HeldFile& file, NativeView name) override { return real->hardLink(file, name); }
    Status symbolicLink(const fs::path&, NativeView) override
    {
        return Error{ErrorKind::accessDenied, 1314, "a right is missing"};
    }
    Result<fs::path> readLink(NativeView name) const override { return real->readLink(name); }
    Status exchange(NativeView a, NativeView b) override { return real->exchange(a, b); }
    Status replace(NativeView from, NativeView to) override { return real->replace(from, to); }
    Status rename(NativeView from, NativeView to) override { return real->rename(from, to); }
    Status remove(NativeView name) override { return real->remove(name); }
    Status flush() override { return real->flush(); }
    Status flushVolume() override { return real->flushVolume(); }
    std::unique_ptr<HeldFolder> real;
};

Result<std::unique_ptr<HeldFolder>> UnprivilegedFiles::openFolder(const fs::path& folder)
{
    auto opened = real.openFolder(folder);
    if (!opened)
        return opened.error();
    return std::unique_ptr<HeldFolder>(std::make_unique<UnprivilegedFolder>(std::move(*opened)));
}

TEST(LinkPass, LetsAnAdministratorMakeSymbolicLinks)
{
    if (!testing::TempTree::canLink())
        GTEST_SKIP() << "no symbolic links here";
    const struct {
        bool start, doNotAskAgain, offered, elevated, refused;
        const char* told;
        std::size_t asked;
        int calls;
    } rows[] = {
        {true, false, true, false, false, "[a] b:done symbolic>a c:done symbolic>a ", 1, 2},
        {true, true, true, false, false, "[a] b:done symbolic>a c:done symbolic>a ", 1, 2},
        {false, true, true, false, false, "[a] b:failed system c:failed system ", 1, 0},
        {false, false, false, false, false, "[a] b:done symbolic>a c:done symbolic>a ", 0, 2},
        {true, false, true, true, false, "[a] b:failed system c:failed system ", 0, 0},
        {true, false, true, false, true, "[a] b:failed system c:failed system ", 1, 1},
    };
    for (const auto& row : rows) {
        LinkWorld world("bc", LinkKind::symbolic);
        UnprivilegedFiles files(*world.held);
        FakeService service;
        if (row.refused)
            service.answer = Error{ErrorKind::cancelled, 1223, "refused"};
        world.held = &files;
        world.elevated = &service;
        world.isElevated = row.elevated;
        world.options.offerElevation = row.offered;
        world.questions.elevation = {row.start, row.doNotAskAgain};
        world.linkAll();
        EXPECT_EQ(world.told, row.told) << &row - rows;
        const auto isElevation = [](const std::string& asked) { return asked.starts_with("Creating symbolic links"); };
        EXPECT_EQ(std::count_if(world.questions.asked.begin(), world.questions.asked.end(), isElevation), row.asked);
        EXPECT_EQ(service.calls, row.calls) << &row - rows;
        EXPECT_EQ(world.outcome.noticesOff, row.doNotAskAgain ? 0x100u : 0u);
        EXPECT_EQ(world.left(), "a,b,c,trash");
    }
}

ShellItem* fileAt(const char* path, FileIdentity identity = {})
{
    FileInfo info;
    info.identity = identity;
    static std::vector<Ref<ShellItem>> alive;
    return alive.emplace_back(ShellItem::make(nullptr, testing::native(path), info, ShellItem::Place::fileSystem))
        .get();
}

TEST(LinkVolumes, RememberFailuresByDriveLetterOrVolume)
{
    PassWorld world;
    const testing::SimpleFolding folding;
    const auto rules = makeWindowsPathRules(folding);
    world.paths = rules.get();
    const PassPorts ports = world.ports();
    LinkVolumes volumes(ports, world.memory);
    const Error denied{ErrorKind::accessDenied, 5, {}}, unable{ErrorKind::notSupported, 50, {}};
    volumes.failed(*fileAt("D:\\x\\a", {7, 1}), denied);
    EXPECT_TRUE(volumes.refuses(*fileAt("d:\\y", {8, 1})));
    EXPECT_TRUE(volumes.refuses(*fileAt("\\\\?\\D:\\y")));
    EXPECT_FALSE(volumes.refuses(*fileAt("C:\\y", {7, 1})));
    EXPECT_EQ(volumeKey(*fileAt("\\\\?\\c:\\y"), *rules), 3u);
    volumes.failed(*fileAt("\\\\server\\share\\a", {9, 1}), denied);
    EXPECT_FALSE(volumes.refuses(*fileAt("\\\\server\\share\\b", {9, 2}))) << "a folder without rights";
    const Error crossing{ErrorKind::notSupported, static_cast<int>(std::errc::cross_device_link), {}};
    volumes.failed(*fileAt("\\\\server\\share\\a", {9, 1}), crossing);
    EXPECT_FALSE(volumes.refuses(*fileAt("\\\\server\\share\\b", {9, 2}))) << "a second mount of one volume";
    volumes.failed(*fileAt("\\\\server\\share\\a", {9, 1}), unable);
    EXPECT_TRUE(volumes.refuses(*fileAt("\\\\server\\share\\b", {9, 2})));
    volumes.failed(*fileAt("\\\\other\\share\\a"), unable);
    EXPECT_FALSE(volumes.refuses(*fileAt("\\\\third\\share\\a"))) << "volumes that nobody can tell apart";
}

TEST(LinkPass, TriesNothingOnAVolumeThatRefusesLinks)
{
    LinkWorld world("bc");
    world.memory.unlinkableVolumes.insert(volumeKey(world.model.item(world.ids["b"]).file.item(), *world.paths));
    world.linkAll();
    EXPECT_EQ(world.told, "[a] b:failed volumeRefuses c:failed volumeRefuses ");
    EXPECT_EQ(world.ended_.front().failure->error.systemCode, 1);
    EXPECT_TRUE(world.questions.asked.empty());
    EXPECT_TRUE(world.journal.lines.empty());
}

}  // namespace
}  // namespace kelvane
