#include "platform/windows/recycle_listener.h"

#include <atomic>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

struct FreeTaskMemory {
    void operator()(wchar_t* text) const { ::CoTaskMemFree(text); }
};

std::optional<std::filesystem::path> pathOf(IShellItem* item)
{
    for (const SIGDN form : {SIGDN_FILESYSPATH, SIGDN_DESKTOPABSOLUTEPARSING}) {
        wchar_t* text = nullptr;
        if (item != nullptr && SUCCEEDED(item->GetDisplayName(form, &text)) && text != nullptr)
            return std::filesystem::path(std::unique_ptr<wchar_t, FreeTaskMemory>(text).get());
    }
    return std::nullopt;
}

// The name is taken to the letter: the shell drops dots and spaces at its end and would then mean another file.
FileIdentity identityBehind(IShellItem* item)
{
    const auto path = pathOf(item);
    if (!path)
        return {};
    const Handle file(openToLook(systemPath(*path), false));
    return file.valid() ? identityOf(file.get()) : FileIdentity{};
}

bool isDecisive(HRESULT result)
{
    return result != removal_code::ignoredA && result != removal_code::ignoredB;
}

// The table of a COM interface has no place for a destructor; here it stands behind all of the interface's functions.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class RecycleListener final : public IFileOperationProgressSink {
public:
    RecycleListener(const RemovalItem& item, RecycleState& state) : item_(item), state_(state) {}
    virtual ~RecycleListener() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override
    {
        const bool known = wanted == IID_IUnknown || wanted == IID_IFileOperationProgressSink;
        *object = known ? static_cast<IFileOperationProgressSink*>(this) : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references_;
        if (left == 0)
            const std::unique_ptr<RecycleListener> last(this);
        return left;
    }

    HRESULT STDMETHODCALLTYPE PreDeleteItem(DWORD flags, IShellItem* item) override
    {
        if ((flags & TSF_DELETE_RECYCLE_IF_POSSIBLE) == 0)
            state_.refused = Error{ErrorKind::notSupported, ERROR_NOT_SUPPORTED, "the recycle bin does not take it"};
        else if (const auto now = identityBehind(item); !now.known() || now != item_.identity)
            state_.refused = anotherFile();
        return state_.refused ? E_ABORT : S_OK;
    }

    HRESULT STDMETHODCALLTYPE PostDeleteItem(DWORD, IShellItem*, HRESULT result, IShellItem* created) override
    {
        if (!isDecisive(result))
            return S_OK;
        state_.told = outcomeOf(result);
        if (!state_.told->error)
            state_.told->trashed = pathOf(created);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE StartOperations() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE FinishOperations(HRESULT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PreRenameItem(DWORD, IShellItem*, LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PostRenameItem(DWORD, IShellItem*, LPCWSTR, HRESULT, IShellItem*) override
    {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PreMoveItem(DWORD, IShellItem*, IShellItem*, LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PostMoveItem(DWORD, IShellItem*, IShellItem*, LPCWSTR, HRESULT, IShellItem*) override
    {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PreCopyItem(DWORD, IShellItem*, IShellItem*, LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PostCopyItem(DWORD, IShellItem*, IShellItem*, LPCWSTR, HRESULT, IShellItem*) override
    {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PreNewItem(DWORD, IShellItem*, LPCWSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PostNewItem(DWORD, IShellItem*, LPCWSTR, LPCWSTR, DWORD, HRESULT, IShellItem*) override
    {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE UpdateProgress(UINT, UINT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ResetTimer() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PauseTimer() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ResumeTimer() override { return S_OK; }

private:
    std::atomic<ULONG> references_ = 1;
    const RemovalItem& item_;
    RecycleState& state_;
};
#pragma GCC diagnostic pop

}  // namespace

ComPointer<IFileOperationProgressSink> makeRecycleListener(const RemovalItem& item, RecycleState& state)
{
    return ComPointer<IFileOperationProgressSink>(std::make_unique<RecycleListener>(item, state).release());
}

Error anotherFile()
{
    return {ErrorKind::changed, ERROR_FILE_INVALID, "another file took its place"};
}

RemovalOutcome outcomeOf(HRESULT result)
{
    RemovalOutcome outcome;
    outcome.code = static_cast<std::int32_t>(result);
    if (FAILED(result) || result == removal_code::skippedByPerson)
        outcome.error = resultError(result);
    return outcome;
}

}  // namespace kelvane::windows_os
