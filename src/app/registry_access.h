// The settings of the running program: where they are kept, loaded once at the start, saved once at the end.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "app/questions.h"
#include "app/settings.h"
#include "base/result.h"
#include "platform/settings_store.h"

namespace kelvane {

class Platform;

// A registry key, or an INI file; exactly one of the two is in use.
struct SettingsLocation {
    std::u16string keyPath;         // under the person's own hive; empty in INI mode
    std::filesystem::path iniPath;  // empty in registry mode
    [[nodiscard]] bool isIni() const { return !iniPath.empty(); }
    friend bool operator==(const SettingsLocation&, const SettingsLocation&) = default;
};

inline constexpr std::u16string_view settingsKeyPath = u"Software\\Ostravenil Plc\\Kelvane";

// Owned by the application object. One thread at a time; the platform must outlive it.
class CRegistryAccess {
public:
    explicit CRegistryAccess(Platform& platform);
    ~CRegistryAccess();
    CRegistryAccess(const CRegistryAccess&) = delete;
    CRegistryAccess& operator=(const CRegistryAccess&) = delete;

    // `iniArgument` is the text after "/I:", empty when none was given. Opens the store.
    void chooseLocation(const std::filesystem::path& iniArgument);

    // Never fails: what is missing, of the wrong type or out of range takes its default. Counts this start.
    void load(Questions& questions);

    // Everything that the persistence mode allows, all of it or nothing.
    [[nodiscard]] SettingsCode save();

    // Moves to the other kind of location; the file that is left is renamed to ".bak". Everything is saved there at
    // once, and stays where it was when that fails.
    [[nodiscard]] Status switchTo(PersistenceMode mode);

    // Every value and section under the root, for leaving no trace.
    [[nodiscard]] SettingsCode eraseAll();

    [[nodiscard]] Settings& settings() { return settings_; }
    [[nodiscard]] const Settings& settings() const { return settings_; }
    [[nodiscard]] const SettingsLocation& location() const { return location_; }
    [[nodiscard]] SettingsStore& store();
    [[nodiscard]] bool isWritable();

private:
    Platform& platform_;
    SettingsLocation location_;
    std::unique_ptr<SettingsStore> ini_;
    Settings settings_;
};

}  // namespace kelvane
