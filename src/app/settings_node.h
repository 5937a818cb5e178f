// One opened section or subkey of the settings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings_location.h"
#include "platform/settings_store.h"

namespace kelvane {

// Parent and name with one backslash between them; the parent less its trailing backslash when there is no name. An
// empty parent is the root of an INI file: its sections are named without a backslash.
[[nodiscard]] std::u16string joinSettingsPath(std::u16string_view parent, std::u16string_view name);

// Where the nodes of a program start. The store must outlive it and its nodes.
struct SettingsRoot {
    SettingsStore* store = nullptr;
    SettingsLocation location;
};

// Lives on the stack for a few reads or writes, on one thread. The same operations whatever holds the settings; only
// what a missing key answers differs: a registry node without its key says noKey where an INI node says notFound.
class SettingsNode {
public:
    // A writable node makes a registry key that is not there.
    SettingsNode(const SettingsRoot& root, std::u16string_view name, SettingsAccess access);
    SettingsNode(const SettingsNode& parent, std::u16string_view name, SettingsAccess access);

    [[nodiscard]] const std::u16string& path() const { return path_; }
    [[nodiscard]] bool isIni() const { return root_.location.isIni(); }
    [[nodiscard]] bool isOpen() const { return section_ != nullptr; }  // false: absent, or could not be made

    [[nodiscard]] SettingsCode readNumber(std::u16string_view name, std::uint32_t& value) const;
    [[nodiscard]] SettingsCode writeNumber(std::uint32_t value, std::u16string_view name);

    // `size` is the room in bytes and becomes the size of the block; without a buffer nothing else happens.
    [[nodiscard]] SettingsCode readBinary(std::byte* buffer, std::u16string_view name, std::size_t& size) const;
    [[nodiscard]] SettingsCode readBinary(std::vector<std::byte>& block, std::u16string_view name) const;
    [[nodiscard]] SettingsCode writeBinary(const std::byte* bytes, std::u16string_view name, std::size_t size);

    // At most 99,999 characters of it; empty on failure.
    [[nodiscard]] SettingsCode readString(std::u16string& text, std::u16string_view name) const;
    [[nodiscard]] SettingsCode writeString(std::u16string_view text, std::u16string_view name);

    [[nodiscard]] std::vector<std::u16string> valueNames() const;
    [[nodiscard]] std::vector<std::u16string> subsectionNames() const;
    [[nodiscard]] SettingsCode deleteValue(std::u16string_view name);
    [[nodiscard]] SettingsCode deleteSubsection(std::u16string_view name);

private:
    SettingsNode(const SettingsRoot& root, std::u16string path, SettingsAccess access, bool /*joined*/);
    [[nodiscard]] SettingsCode unopened() const;
    [[nodiscard]] SettingsCode afterWrite(SettingsCode code, SettingsCode iniFailure) const;

    SettingsRoot root_;
    std::u16string path_;
    SettingsAccess access_;
    std::unique_ptr<SettingsSection> section_;
};

}  // namespace kelvane
