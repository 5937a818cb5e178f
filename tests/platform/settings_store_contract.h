// The promises of the settings port: one suite, run on each back end that a test program instantiates it with.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/settings_store.h"
#include "support/memory_settings_store.h"

namespace kelvane::testing {

// One place where settings are kept, empty at first.
class SettingsWorld {
public:
    virtual ~SettingsWorld() = default;
    // A store of that place, as another start of the program would open it.
    [[nodiscard]] virtual std::unique_ptr<SettingsStore> open() = 0;
};

// A back end, and where it must differ from the others.
struct SettingsBackEnd {
    std::string name;
    std::function<std::unique_ptr<SettingsWorld>()> make;
    bool knowsTypes = true;          // a number does not read as a text
    bool keepsEmptySections = true;  // a section is there without a value in it
    bool keepsSectionOrder = true;   // sections are listed in the order in which they were made
    bool keepsTransactions = true;   // nothing is written before commit()
    bool keepsAnyText = true;        // line breaks, "=" in names
    bool keepsMissingNumber = true;  // the number 0xDEADBEEB is one like any other
    bool reopens = true;             // another store sees what this one wrote
};

inline void PrintTo(const SettingsBackEnd& backEnd, std::ostream* out)
{
    *out << backEnd.name;
}

class SettingsStoreContract : public ::testing::TestWithParam<SettingsBackEnd> {
protected:
    [[nodiscard]] std::unique_ptr<SettingsSection> write(std::u16string_view path) const
    {
        auto section = store_->open(path, SettingsAccess::writing);
        EXPECT_NE(section, nullptr);
        return section;
    }
    [[nodiscard]] std::unique_ptr<SettingsSection> read(std::u16string_view path) const
    {
        return store_->open(path, SettingsAccess::reading);
    }
    void reopen()
    {
        if (GetParam().reopens)
            store_ = world_->open();
    }

    std::unique_ptr<SettingsWorld> world_ = GetParam().make();
    std::unique_ptr<SettingsStore> store_ = world_->open();
};

}  // namespace kelvane::testing
