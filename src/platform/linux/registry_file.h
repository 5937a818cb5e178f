// The file that stands in for the registry: found, judged, made, and set aside when it is damaged.
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/sqlite_database.h"
#include "platform/settings_store.h"

namespace kelvane::linux_os {

// One thread at a time; several processes may use one file. The layout is described in docs/formats/registry-linux.md.
class RegistryFile {
public:
    explicit RegistryFile(std::filesystem::path path);

    // The database to read from, or null when there is none that can be read: `reason` tells apart a missing one (done)
    // from one that could not be had just now.
    [[nodiscard]] SqliteDatabase* forReading(SettingsCode& reason);

    // The database to write to, made when missing; a damaged file is moved to a free name first. Null: `reason`.
    [[nodiscard]] SqliteDatabase* forWriting(SettingsCode& reason);

    // Says what an operation on the database ended with, so that a file that proves damaged is read no further.
    void report(int sqliteCode);

    [[nodiscard]] bool isWritable();
    [[nodiscard]] std::string complaint();

private:
    enum class State {
        unknown,      // not looked at, or no longer the file that was looked at
        missing,      // or without any contents
        sound,        //
        newer,        // made by a later version of the program: read as far as it can be
        damaged,      // or another program's
        unavailable,  // locked, unreadable, on a failing device
    };

    void refresh();
    void examine();
    [[nodiscard]] State judge();
    [[nodiscard]] State judgeVersion(std::int64_t application, std::int64_t version, std::int64_t tables);
    [[nodiscard]] SettingsCode prepare();
    [[nodiscard]] SettingsCode prepareLocked();
    [[nodiscard]] SettingsCode setAside();
    [[nodiscard]] SettingsCode createFile();
    [[nodiscard]] SettingsCode createTables();

    std::filesystem::path path_;
    SqliteDatabase database_;
    State state_ = State::unknown;
    int code_ = SQLITE_OK;  // why the file is unavailable
    std::string keptAs_;    // where a damaged file was moved to
};

}  // namespace kelvane::linux_os
