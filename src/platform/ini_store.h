// Settings in one INI file.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/settings_store.h"
#include "platform/text_folding.h"

namespace kelvane {

struct IniOptions {
    // Keeps to what the profile functions of old systems can carry: a block of 32,768 bytes or a text of more than
    // 32,760 characters is refused as too long.
    bool limited = false;
};

// A section "parent\child" is written as one name, and the values of the root stand before the first section line.
// A file that is not there yet is made with the first value; its folder must exist. Everything is read as the profile
// functions read it, so a value has no type: a text without digits is the number 0. The ports must outlive the store.
[[nodiscard]] std::unique_ptr<SettingsStore> makeIniStore(FileSystem& files, FileOutput& output,
                                                          const TextFolding& folding, std::filesystem::path path,
                                                          IniOptions options = {});

}  // namespace kelvane
