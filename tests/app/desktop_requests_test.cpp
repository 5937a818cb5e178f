#include "app/desktop_requests.h"

#include <gtest/gtest.h>

#include "app/command_text.h"
#include "platform/native_text.h"
#include "support/fake_instance_ports.h"

namespace kelvane {
namespace {

TEST(DesktopRequests, ArriveAsTheCommandLineOfASecondStart)
{
    testing::FakeInstancePorts ports;
    std::vector<PortMessage> heard;
    const auto keep = [&](PortMessage message, const PortPeer&) {
        heard.push_back(std::move(message));
        return 1u;
    };
    const auto handler = handOverRequests(ports, "port", 5);
    handler({{}, ""});  // nobody holds the port: no harm
    const auto port = ports.claim("port", keep);

    handler({{}, ""});
    handler({{nativeFromBytes("/music/a b"), nativeFromBytes("-p")}, "token"});

    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[1].tag, 5u);
    EXPECT_TRUE(argumentsOf(*decodeHandOver(heard[0].bytes)).empty());
    EXPECT_EQ(argumentsOf(*decodeHandOver(heard[1].bytes)), (std::vector<std::string>{"/music/a b", "-p"}));
}

}  // namespace
}  // namespace kelvane
