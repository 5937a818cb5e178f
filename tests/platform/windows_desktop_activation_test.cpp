// The shell's side of a DDE conversation, played to the program's.
#include <cstring>
#include <gtest/gtest.h>
#include <windows.h>

#include <dde.h>

#include <future>

#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

// A window of this thread that counts the answers which it gets.
class Client {
public:
    Client() : window_(::CreateWindowExW(0, L"static", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr))
    {
        ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ::SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Client::take));
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { ::DestroyWindow(window_); }

    // The window that answered, null when it did not.
    HWND initiate(HWND server, const wchar_t* application, const wchar_t* topic)
    {
        const ATOM first = ::GlobalAddAtomW(application), second = ::GlobalAddAtomW(topic);
        answeredBy_ = nullptr;
        ::SendMessageW(server, WM_DDE_INITIATE, own(), MAKELPARAM(first, second));
        ::GlobalDeleteAtom(first);
        ::GlobalDeleteAtom(second);
        return answeredBy_;
    }

    void execute(HWND server, const std::wstring& command)
    {
        const std::size_t size = (command.size() + 1) * sizeof(wchar_t);
        const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, size);
        std::memcpy(::GlobalLock(block), command.c_str(), size);
        ::GlobalUnlock(block);
        ::PostMessageW(server, WM_DDE_EXECUTE, own(),
                       ::PackDDElParam(WM_DDE_EXECUTE, 0, reinterpret_cast<UINT_PTR>(block)));
        await(acknowledged_);
        ::GlobalFree(block);
    }

    void terminate(HWND server)
    {
        ::PostMessageW(server, WM_DDE_TERMINATE, own(), 0);
        await(terminated_);
    }

private:
    [[nodiscard]] WPARAM own() const { return reinterpret_cast<WPARAM>(window_); }

    static void await(bool& happened)
    {
        happened = false;
        MSG message;
        const ULONGLONG until = ::GetTickCount64() + 20'000;
        while (!happened && ::GetTickCount64() < until) {
            ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
            while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                ::DispatchMessageW(&message);
        }
        EXPECT_TRUE(happened);
    }

    static LRESULT CALLBACK take(HWND window, UINT message, WPARAM sender, LPARAM content)
    {
        auto& self = *reinterpret_cast<Client*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_DDE_ACK) {
            self.answeredBy_ = reinterpret_cast<HWND>(sender);
            self.acknowledged_ = true;
        }
        self.terminated_ = self.terminated_ || message == WM_DDE_TERMINATE;
        return message == WM_DDE_ACK ? 0 : ::DefWindowProcW(window, message, sender, content);
    }

    HWND window_;
    HWND answeredBy_ = nullptr;
    bool acknowledged_ = false;
    bool terminated_ = false;
};

TEST(DdeActivationTest, AnswersItsOwnNameOnceInTwoSecondsAndPassesCommandsOn)
{
    std::promise<DesktopRequest> asked;
    const auto service = makeDdeActivation()->serve({}, [&](DesktopRequest request) { asked.set_value(request); });
    ASSERT_TRUE(service.ok());
    const HWND window = ::FindWindowW(L"static", L"kelvane_Desktop");
    ASSERT_NE(window, nullptr);
    Client client;

    EXPECT_EQ(client.initiate(window, L"Kelvane", L"Elsewhere"), nullptr);
    EXPECT_EQ(client.initiate(window, L"Another", L"System"), nullptr);
    EXPECT_EQ(client.initiate(window, L"Kelvane", L"System"), window);
    EXPECT_EQ(client.initiate(window, L"Kelvane", L"System"), nullptr) << "the shell repeats itself";

    client.execute(window, L"[open(\"C:\\my photos\")]");
    auto request = asked.get_future();
    ASSERT_EQ(request.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(request.get().words, std::vector<NativeString>{L"C:\\my photos"});
    client.terminate(window);
}

}  // namespace
}  // namespace kelvane
