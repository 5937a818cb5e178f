// How the Windows shell asks a running program for something: DDE, by the messages of its published protocol ("About
// Dynamic Data Exchange"). The shell broadcasts an initiation to all windows, sends what it wants executed to the one
// that answers, and terminates.
#include "platform/desktop_activation.h"

#include <windows.h>

#include <dde.h>
#include <shellapi.h>

#include "platform/windows/adapters.h"
#include "platform/windows/hidden_window.h"

namespace kelvane {
namespace {

constexpr const wchar_t* application = L"Kelvane";
constexpr const wchar_t* topic = L"System";
// The shell repeats its broadcast while a program starts; two conversations would open two windows.
constexpr ULONGLONG millisecondsBetweenAnswers = 2'000;

class Atom {
public:
    explicit Atom(const wchar_t* name) : atom_(::GlobalAddAtomW(name)) {}
    Atom(const Atom&) = delete;
    Atom& operator=(const Atom&) = delete;
    ~Atom() { ::GlobalDeleteAtom(atom_); }
    [[nodiscard]] ATOM get() const { return atom_; }

private:
    ATOM atom_;
};

// "[open("C:\photos")]", or the arguments as they are: what stands in quotation marks or brackets is one word.
std::vector<NativeString> wordsOf(std::wstring command)
{
    constexpr std::wstring_view open = L"[open(";
    constexpr std::wstring_view close = L")]";
    if (command.starts_with(open) && command.ends_with(close))
        command = command.substr(open.size(), command.size() - open.size() - close.size());
    if (command.find_first_not_of(L" \t") == std::wstring::npos)
        return {};
    int count = 0;
    const std::wstring line = L"program " + command;
    wchar_t** const split = ::CommandLineToArgvW(line.c_str(), &count);
    if (split == nullptr)
        return {};
    std::vector<NativeString> words(split + 1, split + count);
    ::LocalFree(split);
    return words;
}

// The text in a block of memory that the sender made; its own length bounds it, not its terminator.
std::wstring textIn(HGLOBAL block)
{
    const auto* characters = static_cast<const wchar_t*>(::GlobalLock(block));
    if (characters == nullptr)
        return {};
    std::wstring text(characters, ::GlobalSize(block) / sizeof(wchar_t));
    ::GlobalUnlock(block);
    if (const auto end = text.find(L'\0'); end != std::wstring::npos)
        text.resize(end);
    return text;
}

// The server's side of the conversations; used on its window's thread alone.
class Conversations {
public:
    explicit Conversations(DesktopActivation::Handler handler) : handler_(std::move(handler)) {}

    std::optional<LRESULT> take(HWND window, UINT message, WPARAM sender, LPARAM content)
    {
        const auto client = reinterpret_cast<HWND>(sender);
        switch (message) {
        case WM_DDE_INITIATE:
            return initiate(window, client, content);
        case WM_DDE_EXECUTE:
            return execute(window, client, content);
        case WM_DDE_TERMINATE:
            ::PostMessageW(client, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window), 0);
            return 0;
        default:
            return std::nullopt;
        }
    }

private:
    LRESULT initiate(HWND window, HWND client, LPARAM content)
    {
        const ULONGLONG now = ::GetTickCount64();
        const bool ours = LOWORD(content) == application_.get() && HIWORD(content) == topic_.get();
        if (!ours || (lastAnswer_ != 0 && now - lastAnswer_ < millisecondsBetweenAnswers))
            return 0;
        lastAnswer_ = now;
        // The receiver of the answer deletes the atoms, so it gets references of its own.
        const Atom answered(application);
        const Atom about(topic);
        ::GlobalAddAtomW(application);
        ::GlobalAddAtomW(topic);
        ::SendMessageW(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(window), MAKELPARAM(answered.get(), about.get()));
        return 0;
    }

    LRESULT execute(HWND window, HWND client, LPARAM content)
    {
        UINT_PTR unused = 0, block = 0;
        ::UnpackDDElParam(WM_DDE_EXECUTE, content, &unused, &block);
        const std::wstring command = textIn(reinterpret_cast<HGLOBAL>(block));
        constexpr UINT_PTR taken = 0x8000;  // fAck of DDEACK
        const LPARAM answer = ::ReuseDDElParam(content, WM_DDE_EXECUTE, WM_DDE_ACK, taken, block);
        ::PostMessageW(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(window), answer);
        handler_({wordsOf(command), {}});
        return 0;
    }

    DesktopActivation::Handler handler_;
    Atom application_{application};
    Atom topic_{topic};
    ULONGLONG lastAnswer_ = 0;
};

class DdeService final : public DesktopService {
public:
    DdeService(std::unique_ptr<Conversations> conversations, std::unique_ptr<windows_os::HiddenWindow> window)
        : conversations_(std::move(conversations)), window_(std::move(window))
    {
    }

private:
    std::unique_ptr<Conversations> conversations_;
    std::unique_ptr<windows_os::HiddenWindow> window_;  // gone first: its thread uses the conversations
};

class DdeActivation final : public DesktopActivation {
public:
    // Actions belong to the program's icon, which on Windows names command lines itself.
    Result<std::unique_ptr<DesktopService>> serve(std::vector<DesktopAction> /*actions*/, Handler handler) override
    {
        auto conversations = std::make_unique<Conversations>(std::move(handler));
        auto window = windows_os::HiddenWindow::create(
            L"kelvane_Desktop", [server = conversations.get()](HWND own, UINT message, WPARAM first, LPARAM second) {
                return server->take(own, message, first, second);
            });
        if (!window)
            return window.error();
        return std::unique_ptr<DesktopService>(new DdeService(std::move(conversations), std::move(*window)));
    }
};

}  // namespace

std::unique_ptr<DesktopActivation> makeDdeActivation()
{
    return std::make_unique<DdeActivation>();
}

}  // namespace kelvane
