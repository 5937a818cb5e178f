// The settings of the running program: where they are kept, loaded once at the start, saved once at the end.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "app/questions.h"
#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_location.h"
#include "app/settings_node.h"
#include "base/result.h"
#include "platform/clock.h"
#include "platform/file_output.h"
#include "platform/settings_store.h"

namespace kelvane {

class Platform;
struct SettingRow;

using IniStoreMaker = std::function<std::unique_ptr<SettingsStore>(const std::filesystem::path& path)>;

// What settings need of the world; all of it outlives them.
struct SettingsPorts {
    FileSystem& files;
    FileOutput& output;
    SettingsStore& registry;
    const Places& places;
    const SystemFacts& facts;
    const TextFolding& folding;
    const Clock& clock;
    IniStoreMaker makeIni;
};

[[nodiscard]] SettingsPorts settingsPorts(Platform& platform);

// Why settings could not be written, as a clause for the person.
[[nodiscard]] std::string settingsFailure(SettingsCode code);

// Owned by the application object. One thread at a time.
class CRegistryAccess {
public:
    explicit CRegistryAccess(Platform& platform);
    explicit CRegistryAccess(SettingsPorts ports);
    ~CRegistryAccess();
    CRegistryAccess(const CRegistryAccess&) = delete;
    CRegistryAccess& operator=(const CRegistryAccess&) = delete;

    // Told before loading, and again when it changes: part of the defaults, and of what is saved.
    void setTranslation(TranslationState state) { translation_ = state; }

    // `iniArgument` is the text after "/I:", empty when none was given. Opens the store.
    void chooseLocation(const std::filesystem::path& iniArgument);
    void useLocation(const SettingsLocation& location);

    // Never fails: what is missing, of the wrong type or out of range takes its default. Counts this start, asks on
    // the first one, and tells of a damaged place.
    void load(Questions& questions);

    // The same without a count or a question, for a look: nothing is written, not even a new place.
    void loadForReading();

    // A person changed a row that no save writes of its own accord: the next one that succeeds does.
    void changedByHand(const SettingRow& row) { byHand_.insert(&row); }

    // Everything that the persistence mode allows, all of it or nothing; and the rows that were changed by hand.
    [[nodiscard]] SettingsCode save();

    // Moves to the other kind of location, with every value and section there is; the file that is left is renamed to
    // ".bak". Everything is saved in the new place first, and the settings stay where they were when a step fails.
    // Back to counters only: the place stays. The error's text names what could not be written.
    [[nodiscard]] Status switchTo(PersistenceMode mode);

    // Every value and section under the root, for leaving no trace. An INI file stays, empty: a program that keeps
    // its settings beside itself shall not turn to the registry at its next start.
    [[nodiscard]] SettingsCode eraseAll();

    // Those of the file that `szPluginINI` of these settings names, or of the settings themselves where it names none.
    // The error is one to show. Touches nothing but that file: on any thread, and without a lock, since it may wait.
    [[nodiscard]] Result<std::vector<ContentPluginEntry>> contentPlugins(const Settings& settings) const;

    // For the person: that the place cannot be written, which one and why.
    [[nodiscard]] std::u16string failureText(SettingsCode code) const;

    [[nodiscard]] Settings& settings() { return settings_; }
    [[nodiscard]] const Settings& settings() const { return settings_; }
    [[nodiscard]] const SettingsLocation& location() const { return location_; }
    [[nodiscard]] SettingsStore& store() { return ini_ ? *ini_ : ports_.registry; }
    [[nodiscard]] SettingsRoot root() { return {&store(), location_}; }
    [[nodiscard]] SettingsContext context() const;
    [[nodiscard]] bool isWritable() { return store().isWritable(); }

private:
    [[nodiscard]] Status moveTo(const SettingsLocation& target, PersistenceMode mode);
    [[nodiscard]] SettingsCode copyTo(const SettingsRoot& to, const Settings& settings);
    [[nodiscard]] Status leaveIniFile(const std::filesystem::path& left);

    SettingsPorts ports_;
    SettingsLocation location_ = registryLocation();
    std::unique_ptr<SettingsStore> ini_;
    TranslationState translation_ = TranslationState::none;
    std::uint32_t interfaceBits_ = 0;  // what the first run was answered; 0 on every later one
    Settings settings_;
    std::set<const SettingRow*> byHand_;  // changed, and not written yet
};

}  // namespace kelvane
