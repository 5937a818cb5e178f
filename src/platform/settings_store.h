// Port: a typed, hierarchical value store, where the program keeps its settings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// How an operation on settings ended: the system error codes of Windows, on every system. A back end may answer with
// other codes of the system beside these.
enum class SettingsCode : std::uint32_t {
    done = 0,
    notFound = 2,
    accessDenied = 5,
    noKey = 6,         // the section was not opened
    invalidData = 13,  // missing, or of another type
    tooLong = 122,     // more than this back end can keep in one value
    moreData = 234,    // the caller's buffer is too small
};

enum class SettingsAccess { reading, writing };

// One opened section. Used by one thread, and gone before its store. Names of values are compared without case.
class SettingsSection {
public:
    virtual ~SettingsSection() = default;

    // invalidData when the value is missing or no number. An INI store takes the number 0xDEADBEEB for a missing one.
    [[nodiscard]] virtual SettingsCode readNumber(std::u16string_view name, std::uint32_t& value) const = 0;
    // notFound when missing; invalidData when of another type or damaged. An empty name is the section's own value.
    [[nodiscard]] virtual SettingsCode readText(std::u16string_view name, std::u16string& text) const = 0;
    [[nodiscard]] virtual SettingsCode readBlock(std::u16string_view name, std::vector<std::byte>& block) const = 0;

    // A value replaces one of any type. accessDenied in a section that was opened for reading.
    [[nodiscard]] virtual SettingsCode writeNumber(std::u16string_view name, std::uint32_t value) = 0;
    [[nodiscard]] virtual SettingsCode writeText(std::u16string_view name, std::u16string_view text) = 0;
    [[nodiscard]] virtual SettingsCode writeBlock(std::u16string_view name, const std::vector<std::byte>& block) = 0;
    [[nodiscard]] virtual SettingsCode deleteValue(std::u16string_view name) = 0;

    // In the order in which they were written; subsections by the last part of their path, direct children only.
    [[nodiscard]] virtual std::vector<std::u16string> valueNames() const = 0;
    [[nodiscard]] virtual std::vector<std::u16string> subsectionNames() const = 0;
};

// A store of one place. Safe on several threads; several processes may use one place at the same time.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    // `path` is the section's full path, its parts joined by backslashes. Null: absent (reading), or it could not be
    // made (writing). An INI store opens every section for writing and makes it with its first value.
    [[nodiscard]] virtual std::unique_ptr<SettingsSection> open(std::u16string_view path, SettingsAccess access) = 0;

    // With everything below it; done when it was not there.
    [[nodiscard]] virtual SettingsCode deleteSection(std::u16string_view path) = 0;

    // Everything written from begin() to commit() is kept together: after a crash either all of it is there or none
    // (the Windows registry alone writes value by value). Without begin() each write stands alone. Nothing is written
    // before commit(); its code tells whether all is safely kept. begin() twice is a programming mistake.
    [[nodiscard]] virtual SettingsCode begin() = 0;
    [[nodiscard]] virtual SettingsCode commit() = 0;
    virtual void discard() = 0;  // what was written since begin()

    // A sentence for the person when the place was damaged and what was done about it ("... was kept as ..."); empty
    // when all is well. A damaged place reads as empty, and its file is set aside before anything is written.
    [[nodiscard]] virtual std::string complaint() const = 0;

    // Whether values written now would be kept.
    [[nodiscard]] virtual bool isWritable() = 0;
};

}  // namespace kelvane
