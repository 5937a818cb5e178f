#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "app/link_helper_client.h"
#include "app/link_request.h"
#include "support/fake_instance_ports.h"
#include "support/fake_places.h"
#include "support/fake_processes.h"
#include "support/fake_waiting.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordingLinks final : public LinkMaker {
public:
    Status makeSymbolicLink(const std::filesystem::path& link, const std::filesystem::path& target,
                            bool toFolder) override
    {
        made.push_back(link.string() + " -> " + target.string() + (toFolder ? " (folder)" : ""));
        return failure ? Status(Error{*failure, 0, {}}) : Status();
    }
    std::vector<std::string> made;
    std::optional<ErrorKind> failure;
};

class LinkRequest : public ::testing::Test {
protected:
    bool serve(const std::string& text, CommandSyntax syntax = CommandSyntax::posix)
    {
        return requests(syntax).serve(encodePortTexts({text}, syntax)).ok();
    }

    LinkRequests requests(CommandSyntax syntax)
    {
        const auto kindOf = [this](const std::filesystem::path& path) {
            const auto found = there.find(path.string());
            return found != there.end() ? Result<FileKind>(found->second) : Error{ErrorKind::notFound, 0, {}};
        };
        return {kindOf, links, syntax};
    }

    std::map<std::string, FileKind> there{
        {"/data/kept", FileKind::regular}, {"/data/folder", FileKind::folder}, {R"(D:\music\kept)", FileKind::regular}};
    RecordingLinks links;
};

TEST_F(LinkRequest, MakesLinksToFilesAndFolders)
{
    EXPECT_TRUE(serve("/data/copy|/data/kept"));
    EXPECT_TRUE(serve("/data/other|/data/folder"));
    EXPECT_THAT(links.made, ElementsAre("/data/copy -> /data/kept", "/data/other -> /data/folder (folder)"));
    links.failure = ErrorKind::changed;
    EXPECT_FALSE(serve("/data/kept|/data/folder"));
}

TEST_F(LinkRequest, LooksForAWindowsTargetOnTheDriveOfTheLink)
{
    EXPECT_TRUE(serve(R"(D:\music\copy|\music\kept)", CommandSyntax::windows));
    EXPECT_THAT(links.made, ElementsAre(R"(D:\music\copy -> D:\music\kept)"));
    EXPECT_FALSE(serve(R"(E:\music\copy|\music\kept)", CommandSyntax::windows));
    // No drives, so no second look: "/d" is no drive.
    EXPECT_FALSE(serve("/d/copy|/ata/kept"));
}

TEST_F(LinkRequest, RefusesWhatIsNotPlain)
{
    for (const char* text : {"", "|", "/data/copy", "/data/copy|", "|/data/kept", "copy|/data/kept", "/data/copy|kept",
                             "/data/a|b|/data/kept", "/data/../data/copy|/data/kept", "/data/copy|/data/..",
                             "/data/co\npy|/data/kept", "/data/copy|/missing"})
        EXPECT_FALSE(serve(text)) << text;
    for (const char* text : {R"(\copy|D:\kept)", R"(D:copy|D:\kept)", R"(D:\copy|kept)", R"(D:\a\..\b|D:\kept)"})
        EXPECT_FALSE(serve(text, CommandSyntax::windows)) << text;
    const auto two = encodePortTexts({"/data/copy|/data/kept", ""}, CommandSyntax::posix);
    EXPECT_FALSE(requests(CommandSyntax::posix).serve(two).ok());
    EXPECT_THAT(links.made, IsEmpty());
    EXPECT_FALSE(encodeLinkRequest("/a|b", "/c", CommandSyntax::posix).ok());
}

class LinkHelper : public ::testing::Test {
protected:
    std::unique_ptr<InstancePort> serveAs(std::uint32_t answer)
    {
        auto claimed = ports.claim("kelvane_CommPortG", [this, answer](const PortMessage& message, const PortPeer&) {
            heard.push_back(message);
            return answer;
        });
        return std::move(claimed).value();
    }
    Status make()
    {
        const std::filesystem::path here = std::filesystem::current_path();
        return client.make(here / "link", here / "target");
    }

    testing::FakeInstancePorts ports;
    testing::FakeProcesses processes;
    testing::FakePlaces places{"/root"};
    testing::FakeWaiting waiting;
    LinkHelperClient client{ports, processes, places, waiting};
    std::vector<PortMessage> heard;
    std::unique_ptr<InstancePort> port;
};

TEST_F(LinkHelper, IsStartedWhenNobodyServes)
{
    int pauses = 0;
    waiting.whilePausing = [&] {
        if (++pauses == 3)
            port = serveAs(1);
    };
    EXPECT_TRUE(make().ok());
    ASSERT_EQ(processes.startedElevated.size(), 1u);
    EXPECT_EQ(processes.startedElevated[0].program, places.program);
    EXPECT_EQ(processes.startedElevated[0].arguments.size(), 2u);
    EXPECT_THAT(waiting.pauses(), ElementsAre(250, 250, 250));
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].tag, 0xDEADBEEFu);
    EXPECT_EQ(ports.sent.back().second, 5'000);

    EXPECT_TRUE(make().ok());
    EXPECT_EQ(processes.startedElevated.size(), 1u);
    client.endHelper();
    client.endHelper();
    EXPECT_EQ(heard.size(), 3u);
    EXPECT_EQ(ports.sent.back(), std::pair(port_tag::exit, std::int64_t{500}));
}

TEST_F(LinkHelper, OfSomebodyElseIsUsedAndLeftRunning)
{
    port = serveAs(1);
    EXPECT_TRUE(make().ok());
    client.endHelper();
    EXPECT_THAT(processes.startedElevated, IsEmpty());
    EXPECT_EQ(heard.size(), 1u);
}

TEST_F(LinkHelper, FailuresReachTheAsker)
{
    EXPECT_FALSE(client.make("relative", "/target").ok());
    processes.elevatedFailure = Error{ErrorKind::cancelled, 0, {}};
    EXPECT_EQ(make().error().kind, ErrorKind::cancelled);

    processes.elevatedFailure.reset();
    EXPECT_EQ(make().error().kind, ErrorKind::io);  // it never answers
    EXPECT_EQ(waiting.pauses().size(), 30u);

    port = serveAs(0);
    EXPECT_EQ(make().error().kind, ErrorKind::io);
}

}  // namespace
}  // namespace kelvane
