// Port: libraries that are loaded while the program runs.
#pragma once

#include <filesystem>
#include <memory>

#include "base/result.h"

namespace kelvane {

// A loaded library; destroying it unloads it.
class SharedLibrary {
public:
    virtual ~SharedLibrary() = default;
    // Null when there is no function of this name. The caller knows its type.
    using Function = void (*)();
    [[nodiscard]] virtual Function function(const char* name) const = 0;
};

class SharedLibraries {
public:
    virtual ~SharedLibraries() = default;
    // An absolute path; runs the library's own start-up code. notFound, or `invalid` for what is no library of this
    // system and processor (the detail says why).
    [[nodiscard]] virtual Result<std::unique_ptr<SharedLibrary>> load(const std::filesystem::path& path) = 0;
};

}  // namespace kelvane
