// What every use of the shell's objects needs.
#pragma once

#include <memory>
#include <windows.h>

#include <objbase.h>

namespace kelvane::windows_os {

struct ReleaseReference {
    template <class Interface>
    void operator()(Interface* object) const
    {
        object->Release();
    }
};

// One reference to a COM object.
template <class Interface>
using ComPointer = std::unique_ptr<Interface, ReleaseReference>;

// COM in a single-threaded apartment, as the shell wants it, for as long as this lives; fails on a thread that has
// chosen otherwise.
class ComOnThread {
public:
    ComOnThread() : result_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~ComOnThread()
    {
        if (SUCCEEDED(result_))
            ::CoUninitialize();
    }
    ComOnThread(const ComOnThread&) = delete;
    ComOnThread& operator=(const ComOnThread&) = delete;

    [[nodiscard]] HRESULT result() const { return result_; }

private:
    HRESULT result_;
};

}  // namespace kelvane::windows_os
