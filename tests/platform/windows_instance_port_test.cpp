// The instance port of Windows in more than one process: this test program starts itself for the other one.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/instance_port_contract.h"
#include "platform/windows/adapters.h"
#include "support/windows_self_start.h"

namespace kelvane {
namespace {

using std::chrono::seconds;
using testing::Elsewhere;

constexpr const wchar_t* orderVariable = L"KELVANE_PORT_ORDER";

std::wstring valueOf(const wchar_t* variable)
{
    wchar_t value[256];
    const DWORD length = ::GetEnvironmentVariableW(variable, value, static_cast<DWORD>(std::size(value)));
    return {value, length};
}

// An exit code says it all: the answer, or the kind of the error above it.
constexpr DWORD errorsFrom = 1'000;

DWORD exitCodeOf(const Elsewhere& result)
{
    return result ? *result : errorsFrom + static_cast<DWORD>(result.error().kind);
}

Elsewhere resultOf(DWORD exitCode)
{
    if (exitCode < errorsFrom)
        return exitCode;
    return Error{static_cast<ErrorKind>(exitCode - errorsFrom), 0, {}};
}

// Starts this program with an order ("claim NAME", "send NAME TAG SIZE") in its environment and waits for its end.
DWORD runWithOrder(const std::wstring& order)
{
    return testing::startSelf(L"--gtest_filter=PortOrder.CarryOut", orderVariable, order);
}

TEST(PortOrder, CarryOut)
{
    std::wistringstream order(valueOf(orderVariable));
    std::wstring verb, name;
    std::uint32_t tag = 0;
    std::size_t size = 0;
    if (!(order >> verb >> name))
        GTEST_SKIP() << "for the other process only";
    order >> tag >> size;
    const std::string port(name.begin(), name.end());
    const auto ports = makeWindowPorts();
    if (verb == L"send")
        ::ExitProcess(exitCodeOf(ports->send(port, {tag, std::vector<std::byte>(size)}, seconds(20))));
    const auto claimed = ports->claim(port, [](const PortMessage&, const PortPeer&) { return 0u; });
    // Without giving it back, as a process that is killed.
    ::ExitProcess(exitCodeOf(claimed ? Elsewhere(0u) : Elsewhere(claimed.error())));
}

class WindowWorld final : public testing::PortWorld {
public:
    InstancePorts& ports() override { return *ports_; }
    std::uint64_t ownProcess() const override { return ::GetCurrentProcessId(); }

    std::optional<Elsewhere> claimElsewhere(const std::string& name) override
    {
        return resultOf(runWithOrder(L"claim " + std::wstring(name.begin(), name.end())));
    }
    std::optional<Elsewhere> sendElsewhere(const std::string& name, const PortMessage& message) override
    {
        return resultOf(runWithOrder(L"send " + std::wstring(name.begin(), name.end()) + L' ' +
                                     std::to_wstring(message.tag) + L' ' + std::to_wstring(message.bytes.size())));
    }

private:
    std::unique_ptr<InstancePorts> ports_ = makeWindowPorts();
};

TEST(WindowPortTest, OtherMessagesAndGarbageDoNoHarm)
{
    int calls = 0;
    const auto ports = makeWindowPorts();
    const auto port = ports->claim("kelvane_CommPort", [&](const PortMessage&, const PortPeer&) {
        ++calls;
        return 1u;
    });
    ASSERT_TRUE(port.ok());
    const HWND window = ::FindWindowW(L"static", L"kelvane_CommPort");
    ASSERT_NE(window, nullptr);
    COPYDATASTRUCT data{5, 3, const_cast<char*>("abc")};
    const auto content = reinterpret_cast<LPARAM>(&data);

    EXPECT_EQ(::SendMessageW(window, WM_COPYDATA, 0, content), FALSE) << "from nobody";
    EXPECT_EQ(::SendMessageW(window, WM_COPYDATA, 0xFFFF'FFF0, content), FALSE) << "from no window";
    ::SendMessageW(window, WM_APP, 1, 2);
    ::SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(calls, 0);
}

}  // namespace

testing::PortWorldMaker testing::systemPortWorld()
{
    return {"windows", [] { return std::make_unique<WindowWorld>(); }};
}

}  // namespace kelvane
