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
    ComPointer<IFileOperation> operation(SUCCEEDED(result) ? static_cast<IFileOperation*>(object) : nullptr);
    if (operation)
        result = operation->SetOperationFlags(flags);
    return SUCCEEDED(result) ? std::move(operation) : nullptr;
}

// Leaves `aborted` alone unless the shell says so.
HRESULT perform(const RemovalItem& item, IFileOperationProgressSink& listener, bool& aborted)
{
    HRESULT result = S_OK;
    const auto operation = fileOperation(result);
    if (!operation)
        return result;
    const auto target = shellItem(plainPath(systemPath(item.path)), result);
    if (!target)
        return result;
    if (FAILED(result = operation->DeleteItem(target.get(), &listener)))
        return result;
    result = operation->PerformOperations();
    BOOL some = FALSE;
    aborted = SUCCEEDED(operation->GetAnyOperationsAborted(&some)) && some != FALSE;
    return result;
}

Status look(const RemovalItem& item)
{
    const Handle file(openToLook(systemPath(item.path), false));
    if (!file.valid())
        return lastError();
    return identityOf(file.get()) == item.identity ? Status() : Status(anotherFile());
}

RemovalOutcome outcomeFor(const RemovalItem& item, const RecycleState& state, HRESULT result)
{
    if (state.refused)
        return {static_cast<std::int32_t>(resultOf(*state.refused)), state.refused, std::nullopt};
    if (state.told)
        return *state.told;
    // An answer that counts, in the place of one that is a step of the shell's own.
    if (FAILED(result))
        return outcomeOf(result == removal_code::ignoredB ? E_ACCESSDENIED : result);
    return outcomeOf(look(item) ? E_FAIL : S_OK);
}

}  // namespace

bool shellRecycles()
{
    HRESULT result = S_OK;
    return fileOperation(result) != nullptr;
}

Recycled recycle(const RemovalItem& item)
{
    RecycleState state;
    if (const Status seen = look(item); !seen)
        state.refused = seen.error();
    const auto listener = makeRecycleListener(item, state);
    BatchOutcome operation;
    const HRESULT result = state.refused ? E_ABORT : perform(item, *listener, operation.aborted);
    // What the shell or the listener has said of the item is the item's own affair.
    const bool itemOnly = state.told || state.refused;
    operation.aborted = operation.aborted && !itemOnly;
    operation.ok = SUCCEEDED(result) || itemOnly;
    return {outcomeFor(item, state, result), operation};
}

}  // namespace kelvane::windows_os
