// The one table of the settings: where each is kept, its default, its bounds, what it means, when it is saved.
#pragma once

#include <span>
#include <variant>

#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_node.h"
#include "base/text_table.h"

namespace kelvane {

inline constexpr std::u16string_view generalSection = u"general";
inline constexpr std::u16string_view persistenceKey = u"bPersistSettings";

// The page of the options where a person finds the setting; bookkeeping is on none.
enum class OptionsPage { bookkeeping, general, view, scanning, comparing, textExtraction, cleanUp, notices };

enum class SavedWhen {
    always,            // in every persistence mode
    withTranslations,  // in every mode, where a translation is installed
    persistent,        // unless only bookkeeping is kept
    never,             // written by other hands only
};

// What happens to a stored number outside of its bounds.
enum class Clamp { none, intoRange, elseDefault, belowIsZero };

using NumberField = std::variant<std::uint32_t Settings::*, std::int32_t Settings::*, std::int64_t Settings::*,
                                 bool Settings::*, FileSize Settings::*, PersistenceMode Settings::*>;

// Bounds and defaults are in stored units. A stored number has 32 bits without a sign, so that a negative one that
// somebody wrote into an INI file counts as a very large one; `isSigned` marks the exception.
struct NumberRule {
    NumberField field;
    std::uint32_t fallback = 0;
    Clamp clamp = Clamp::none;
    std::int64_t least = 0;
    std::int64_t most = UINT32_MAX;
    std::uint32_t unit = 1;  // of the field, for each 1 that is stored
    bool isSigned = false;
    std::uint32_t (*computed)(const SettingsContext& context) = nullptr;  // in place of the fallback
    std::uint32_t (*outgoing)(const Settings& settings, const SettingsContext& context) = nullptr;  // what is saved
};

enum class TextForm {
    plain,
    neverEmpty,      // an empty one is the default
    list,            // separated by commas
    lowerCaseList,   // the same, in lower case
    besideProgram,   // a bare name is meant in the program's folder
    programToStart,  // the same, and an empty one is looked for
};

using TextField = std::variant<std::u16string Settings::*, std::vector<std::u16string> Settings::*>;

struct TextRule {
    TextField field;
    std::u16string_view fallback;
    TextForm form = TextForm::plain;
};

// A value of several bytes. What is missing or malformed takes the default of `read` with an empty block.
struct BlockRule {
    void (*read)(const std::vector<std::byte>& block, const SettingsContext& context, Settings& settings);
    std::vector<std::byte> (*write)(const Settings& settings);  // empty: there is nothing to keep
    std::u16string (*show)(const Settings& settings);           // for people; empty: there is nothing
};

// A section of its own.
struct ListRule {
    void (*read)(const SettingsRoot& root, const SettingsContext& context, Settings& settings);
    SettingsCode (*write)(const SettingsRoot& root, const Settings& settings);
    std::vector<std::u16string> (*show)(const Settings& settings);  // a line for each entry
};

struct SettingRow {
    std::u16string_view key;  // in "general"; of a list: the name of its section
    TextId meaning;
    OptionsPage page;
    SavedWhen saved;
    std::variant<NumberRule, TextRule, BlockRule, ListRule> rule;
    TextId label{};  // in a few words, beside its editor; none where the meaning says it in as few
    TextId unit{};   // that stands behind a number
};

// In the order in which they are saved.
[[nodiscard]] std::span<const SettingRow> settingsTable();

// Null for an unknown key; case is ignored, as in every place where settings are kept.
[[nodiscard]] const SettingRow* findSetting(std::u16string_view key);

// Below the root: of the recent documents "general\\Recent Document List", of all others the key itself.
[[nodiscard]] std::u16string listSection(std::u16string_view key);

// A stored number as it is taken: within its bounds, or what its rule puts in place of it.
[[nodiscard]] std::uint32_t acceptedNumber(const NumberRule& rule, std::uint32_t stored,
                                           const SettingsContext& context);
[[nodiscard]] std::uint32_t defaultNumber(const NumberRule& rule, const SettingsContext& context);

// Between a stored number and its field.
void setNumber(const NumberRule& rule, std::uint32_t stored, Settings& settings);
[[nodiscard]] std::uint32_t storedNumber(const NumberRule& rule, const Settings& settings);

// Between a stored text and its field, by the rule's form; an empty text may take the default.
void setText(const TextRule& rule, std::u16string_view stored, const SettingsContext& context, Settings& settings);
[[nodiscard]] std::u16string storedText(const TextRule& rule, const Settings& settings);

}  // namespace kelvane
