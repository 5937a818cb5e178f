#include "platform/shared_libraries.h"

#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/os_error.h"

namespace kelvane {
namespace {

using windows_os::lastError;

class LoadedLibrary final : public SharedLibrary {
public:
    explicit LoadedLibrary(HMODULE library) : library_(library) {}
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary() override { ::FreeLibrary(library_); }

    Function function(const char* name) const override
    {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library_, name)));
    }

private:
    HMODULE library_;
};

// What is no library, or one of another processor, is the file's fault and not the disk's.
Error loadError()
{
    Error error = lastError();
    switch (error.systemCode) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_ACCESS_DENIED:
        return error;
    case ERROR_MOD_NOT_FOUND:
        error.detail = "a library that it needs is missing: " + error.detail;
        break;
    default:
        break;
    }
    error.kind = ErrorKind::invalid;
    return error;
}

class WindowsSharedLibraries final : public SharedLibraries {
public:
    // What the library needs is looked for beside it, beside the program and in the system, never in the current
    // folder.
    Result<std::unique_ptr<SharedLibrary>> load(const std::filesystem::path& path) override
    {
        if (!path.is_absolute())
            return Error{ErrorKind::invalid, 0, "not an absolute path"};
        const std::wstring name = std::filesystem::path(path).make_preferred().native();
        if (::GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES)
            return lastError();
        const HMODULE library = ::LoadLibraryExW(name.c_str(), nullptr,
                                                 LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
        if (library == nullptr)
            return loadError();
        return std::unique_ptr<SharedLibrary>(std::make_unique<LoadedLibrary>(library));
    }
};

}  // namespace

std::unique_ptr<SharedLibraries> makeWindowsSharedLibraries()
{
    return std::make_unique<WindowsSharedLibraries>();
}

}  // namespace kelvane
