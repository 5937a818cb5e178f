#include "platform/shared_libraries.h"

#include <dlfcn.h>
#include <memory>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;

struct Unload {
    void operator()(void* library) const { ::dlclose(library); }
};

class LoadedLibrary final : public SharedLibrary {
public:
    explicit LoadedLibrary(void* library) : library_(library) {}

    Function function(const char* name) const override
    {
        return reinterpret_cast<Function>(::dlsym(library_.get(), name));
    }

private:
    std::unique_ptr<void, Unload> library_;
};

std::string loaderMessage()
{
    const char* message = ::dlerror();  // NOLINT(concurrency-mt-unsafe): the message is the calling thread's own
    return message != nullptr ? message : std::string();
}

class LinuxSharedLibraries final : public SharedLibraries {
public:
    // A bare name would be looked for along the loader's search path, so that somebody else's library might answer.
    Result<std::unique_ptr<SharedLibrary>> load(const fs::path& path) override
    {
        std::error_code error;
        if (!path.is_absolute())
            return Error{ErrorKind::invalid, 0, "not an absolute path"};
        if (!fs::exists(path, error))
            return Error{ErrorKind::notFound, 0, "there is no such file"};
        // All it needs is found now and not in the middle of a call; its names are hidden from the other libraries.
        if (void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
            return std::unique_ptr<SharedLibrary>(std::make_unique<LoadedLibrary>(library));
        return Error{ErrorKind::invalid, 0, loaderMessage()};
    }
};

}  // namespace

std::unique_ptr<SharedLibraries> makeLinuxSharedLibraries()
{
    return std::make_unique<LinuxSharedLibraries>();
}

}  // namespace kelvane
