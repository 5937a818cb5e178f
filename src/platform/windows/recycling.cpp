#include "platform/windows/recycling.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

// Nothing is asked of a person: what cannot go to the bin stays.
constexpr DWORD flags = FOF_ALLOWUNDO | FOF_NO_UI | FOFX_RECYCLEONDELETE | FOFX_ADDUNDORECORD | FOFX_EARLYFAILURE;

ComPointer<IShellItem> shellItem(const std::filesystem::path& path, HRESULT& result)
{
    void* object = nullptr;
    result = ::SHCreateItemFromParsingName(path.c_str(), nullptr, IID_IShellItem, &object);
    return ComPointer<IShellItem>(SUCCEEDED(result) ? static_cast<IShellItem*>(object) : nullptr);
}

ComPointer<IFileOperation> fileOperation(HRESULT& result)
{
    void* object = nullptr;
    result = ::CoCreateInstance(CLSID_FileOperation, nullptr, CLSCTX_ALL, IID_IFileOperation, &object);
    return ComPointer<IFileOperation>(SUCCEEDED(result) ? static_cast<IFileOperation*>(object) : nullptr);
}

HRESULT perform(const RemovalItem& item, IFileOperationProgressSink& listener, bool& aborted)
{
    HRESULT result = S_OK;
    const auto operation = fileOperation(result);
    if (!operation)
        return result;
    const auto target = shellItem(plainPath(item.path.native()), result);
    if (!target)
        return result;
    if (FAILED(result = operation->SetOperationFlags(flags)) ||
        FAILED(result = operation->DeleteItem(target.get(), &listener)))
        return result;
    result = operation->PerformOperations();
    BOOL some = FALSE;
    aborted = SUCCEEDED(operation->GetAnyOperationsAborted(&some)) && some != FALSE;
    return result;
}

bool isThere(const RemovalItem& item)
{
    const Handle file(openToLook(systemPath(item.path), false));
    return file.valid() && identityOf(file.get()) == item.identity;
}

// For the item about which the shell itself said nothing that counts.
RemovalOutcome silentOutcome(const RemovalItem& item, const RecycleState& state, HRESULT result)
{
    if (state.refused)
        return {static_cast<std::int32_t>(resultOf(*state.refused)), state.refused, std::nullopt};
    if (FAILED(result))
        return outcomeOf(result);
    return outcomeOf(isThere(item) ? E_FAIL : S_OK);
}

}  // namespace

BatchOutcome recycle(const RemovalItem& item, const ToldOutcome& tell)
{
    RecycleState state;
    const auto listener = makeRecycleListener(item, tell, state);
    BatchOutcome batch;
    const HRESULT result = perform(item, *listener, batch.aborted);
    // A refusal is the item's own affair and ends this one operation only.
    batch.aborted = batch.aborted && !state.refused;
    batch.ok = SUCCEEDED(result) || state.refused.has_value();
    if (!state.told)
        tell(silentOutcome(item, state, result));
    return batch;
}

}  // namespace kelvane::windows_os
