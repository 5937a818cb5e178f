// Places and facts of a computer that a test makes up.
#pragma once

#include <map>
#include <utility>

#include "platform/places.h"

namespace kelvane::testing {

// Below `root`: "temporary", "settings", "state", "cache" and the program "program/kelvane". Makes no folder itself.
class FakePlaces final : public Places {
public:
    explicit FakePlaces(const std::filesystem::path& root)
        : temporary(root / "temporary"),
          settings(root / "settings"),
          state(root / "state"),
          cache(root / "cache"),
          program(root / "program" / "kelvane")
    {
    }
    std::filesystem::path temporaryFolder() const override { return temporary; }
    std::filesystem::path settingsFolder() const override { return settings; }
    std::filesystem::path stateFolder() const override { return state; }
    std::filesystem::path cacheFolder() const override { return cache; }
    std::filesystem::path programFile() const override { return program; }

    std::filesystem::path temporary;
    std::filesystem::path settings;
    std::filesystem::path state;
    std::filesystem::path cache;
    std::filesystem::path program;
};

class FakeSystemFacts final : public SystemFacts {
public:
    SystemVersion version() const override { return answers; }
    bool usesDoubleByteCharacters() const override { return doubleByte; }
    bool longPathsEnabled() const override { return longPaths; }
    std::uint32_t screenDpi() const override { return dpi; }
    std::optional<std::uint32_t> thumbnailSize() const override { return thumbnails; }
    std::optional<std::filesystem::path> installedProgram(const std::string& name) const override
    {
        const auto found = programs.find(name);
        return found != programs.end() ? std::optional(found->second) : std::nullopt;
    }

    SystemVersion answers{.major = 10, .minor = 0, .build = 19045, .revision = 0, .productName = u"", .isNt = true};
    bool doubleByte = false;
    bool longPaths = true;
    std::uint32_t dpi = 96;
    std::optional<std::uint32_t> thumbnails;
    std::map<std::string, std::filesystem::path> programs;
};

}  // namespace kelvane::testing
