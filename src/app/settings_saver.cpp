#include "app/settings_saver.h"

#include "app/settings_table.h"

namespace kelvane {
namespace {

bool isSaved(const SettingRow& row, const Settings& settings, const SettingsContext& context)
{
    switch (row.saved) {
    case SavedWhen::always:
        return true;
    case SavedWhen::withTranslations:
        return context.translation != TranslationState::none;
    case SavedWhen::persistent:
        return settings.persistence != PersistenceMode::bookkeepingOnly;
    case SavedWhen::never:
        break;
    }
    return false;
}

class RowSaver {
public:
    RowSaver(const SettingsRoot& root, const Settings& settings, const SettingsContext& context)
        : root_(root), general_(root, generalSection, SettingsAccess::writing), settings_(settings), context_(context)
    {
    }

    [[nodiscard]] bool isOpen() const { return general_.isOpen(); }

    [[nodiscard]] SettingsCode save(const SettingRow& row)
    {
        return std::visit([&](const auto& rule) { return save(row.key, rule); }, row.rule);
    }

private:
    SettingsCode save(std::u16string_view key, const NumberRule& rule)
    {
        const bool computed = rule.outgoing != nullptr;
        return general_.writeNumber(computed ? rule.outgoing(settings_, context_) : storedNumber(rule, settings_), key);
    }

    SettingsCode save(std::u16string_view key, const TextRule& rule)
    {
        return general_.writeString(storedText(rule, settings_), key);
    }

    // A block that is too long for this place stands back behind all the rest.
    SettingsCode save(std::u16string_view key, const BlockRule& rule)
    {
        const std::vector<std::byte> block = rule.write(settings_);
        const SettingsCode code =
            block.empty() ? general_.deleteValue(key) : general_.writeBinary(block.data(), key, block.size());
        const bool harmless = code == SettingsCode::tooLong || (block.empty() && code == SettingsCode::notFound);
        return harmless ? SettingsCode::done : code;
    }

    SettingsCode save(std::u16string_view /*key*/, const ListRule& rule) { return rule.write(root_, settings_); }

    const SettingsRoot& root_;
    SettingsNode general_;
    const Settings& settings_;
    const SettingsContext& context_;
};

SettingsCode writeByHand(std::span<const SettingRow* const> rows, const SettingsRoot& root, const Settings& settings,
                         const SettingsContext& context)
{
    if (settings.persistence == PersistenceMode::bookkeepingOnly)
        return SettingsCode::done;
    RowSaver saver(root, settings, context);
    for (const SettingRow* const row : rows) {
        if (const SettingsCode code = saver.save(*row); code != SettingsCode::done)
            return code;
    }
    return SettingsCode::done;
}

}  // namespace

SettingsCode writeSettings(const SettingsRoot& root, const Settings& settings, const SettingsContext& context)
{
    RowSaver saver(root, settings, context);
    if (!saver.isOpen())
        return SettingsCode::noKey;
    for (const SettingRow& row : settingsTable()) {
        if (!isSaved(row, settings, context))
            continue;
        if (const SettingsCode code = saver.save(row); code != SettingsCode::done)
            return code;
    }
    return SettingsCode::done;
}

SettingsCode saveSettings(const SettingsRoot& root, const Settings& settings, const SettingsContext& context,
                          std::span<const SettingRow* const> byHand)
{
    return writeAsBatch(*root.store, [&] {
        const SettingsCode code = writeSettings(root, settings, context);
        return code == SettingsCode::done ? writeByHand(byHand, root, settings, context) : code;
    });
}

}  // namespace kelvane
