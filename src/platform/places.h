// Port: where things are on this computer, and what it is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kelvane {

// Absolute paths; thread-safe. A folder that is asked for need not exist yet, but for the temporary one.
class Places {
public:
    virtual ~Places() = default;
    [[nodiscard]] virtual std::filesystem::path temporaryFolder() const = 0;  // $TMPDIR, /tmp
    [[nodiscard]] virtual std::filesystem::path settingsFolder() const = 0;   // roaming: $XDG_CONFIG_HOME, ~/.config
    // What the program remembers of its own work, for this computer only: $XDG_STATE_HOME, ~/.local/state
    [[nodiscard]] virtual std::filesystem::path stateFolder() const = 0;
    // What can be made anew at any time, for this computer only: $XDG_CACHE_HOME, ~/.cache
    [[nodiscard]] virtual std::filesystem::path cacheFolder() const = 0;
    [[nodiscard]] virtual std::filesystem::path programFile() const = 0;  // the running program, links resolved
    [[nodiscard]] std::filesystem::path programFolder() const { return programFile().parent_path(); }
};

struct SystemVersion {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    std::uint32_t revision = 0;    // "UBR" of Windows; 0 where there is none
    std::u16string productName;    // as the system calls itself; may be empty
    bool isNt = true;              // false: no Windows of the NT line; true on Linux
    std::uint32_t leastMajor = 0;  // the first major version that the program runs on; 6 for Windows (Vista)
};

// What start-up and the defaults of settings ask of the system. Thread-safe.
class SystemFacts {
public:
    virtual ~SystemFacts() = default;
    [[nodiscard]] virtual SystemVersion version() const = 0;
    [[nodiscard]] virtual bool usesDoubleByteCharacters() const = 0;  // of the system's code page; false on Linux
    [[nodiscard]] virtual bool longPathsEnabled() const = 0;          // true on Linux
    [[nodiscard]] virtual std::uint32_t screenDpi() const = 0;        // 96 where nothing tells
    // The edge that the file manager draws its thumbnails with, in pixels.
    [[nodiscard]] virtual std::optional<std::uint32_t> thumbnailSize() const = 0;
    // Where a program of this name is installed ("notorix2.exe"), in the system's list of programs.
    [[nodiscard]] virtual std::optional<std::filesystem::path> installedProgram(const std::string& name) const = 0;
};

}  // namespace kelvane
