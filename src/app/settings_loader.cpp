#include "app/settings_loader.h"

#include "app/settings_table.h"

namespace kelvane {
namespace {

constexpr std::uint32_t unusedFileOperations = 0x01 | 0x20;

class RowLoader {
public:
    RowLoader(const SettingsRoot& root, const SettingsContext& context, Settings& settings)
        : root_(root), general_(root, generalSection, SettingsAccess::reading), context_(context), settings_(settings)
    {
    }

    void load(const SettingRow& row)
    {
        const bool untold = row.saved == SavedWhen::withTranslations && context_.translation == TranslationState::none;
        std::visit([&](const auto& rule) { load(untold ? std::u16string_view{} : row.key, rule); }, row.rule);
    }

private:
    void load(std::u16string_view key, const NumberRule& rule)
    {
        std::uint32_t stored = 0;
        const bool there = !key.empty() && general_.readNumber(key, stored) == SettingsCode::done;
        setNumber(rule, there ? acceptedNumber(rule, stored, context_) : defaultNumber(rule, context_), settings_);
    }

    void load(std::u16string_view key, const TextRule& rule)
    {
        std::u16string stored;
        const bool there = general_.readString(stored, key) == SettingsCode::done;
        setText(rule, there ? std::u16string_view(stored) : rule.fallback, context_, settings_);
    }

    void load(std::u16string_view key, const BlockRule& rule)
    {
        std::vector<std::byte> stored;
        if (general_.readBinary(stored, key) != SettingsCode::done)
            stored.clear();
        rule.read(stored, context_, settings_);
    }

    void load(std::u16string_view /*key*/, const ListRule& rule) { rule.read(root_, context_, settings_); }

    const SettingsRoot& root_;
    SettingsNode general_;
    const SettingsContext& context_;
    Settings& settings_;
};

// Systems that need no own listing of folders with long paths, or cannot do it.
bool clearsDirectEnumeration(const SettingsContext& context)
{
    const SystemVersion version = context.facts.version();
    const bool tooOld = version.major < 5 || (version.major == 5 && version.minor == 0);
    return context.facts.longPathsEnabled() || (context.windowsRules && (!version.isNt || tooOld));
}

void settleFlags(Settings& settings, const SettingsContext& context)
{
    settings.resetWindowLayout = (settings.flags & settings_flag::resetLayout) != 0;
    settings.flags &= ~settings_flag::resetLayout;
    if (clearsDirectEnumeration(context))
        settings.flags &= ~option_flag::directEnumeration;
    settings.fileOperationFlags &= ~unusedFileOperations;
}

void settleExtraction(Settings& settings)
{
    if (settings.backgroundExtraction)
        return;
    settings.flags &= ~settings_flag::textHelper;
    settings.extractionTimeoutMs = 0;
}

void settleColors(Settings& settings)
{
    if ((settings.flags & settings_flag::darkTheme) != 0)
        settings.viewBackground = view_color::dark;
    else if (settings.viewBackground == view_color::dark)
        settings.viewBackground = view_color::ofSystem;
}

}  // namespace

bool isFirstRun(const SettingsRoot& root)
{
    return !SettingsNode(root, generalSection, SettingsAccess::reading).isOpen();
}

std::uint32_t interfaceBits(InterfaceMode mode)
{
    switch (mode) {
    case InterfaceMode::advanced:
        return settings_flag::expert | settings_flag::advanced;
    case InterfaceMode::beginner:
        return settings_flag::safeOptions | settings_flag::beginner;
    case InterfaceMode::standard:
        break;
    }
    return settings_flag::safeOptions;
}

Settings loadSettings(const SettingsRoot& root, const SettingsContext& context)
{
    Settings settings;
    RowLoader loader(root, context, settings);
    for (const SettingRow& row : settingsTable())
        loader.load(row);
    settleFlags(settings, context);
    settleExtraction(settings);
    settleColors(settings);
    settings.firstRun = isFirstRun(root);
    return settings;
}

void countStart(Settings& settings, const SettingsContext& context)
{
    const bool known = settings.savedVersion != 0;
    if (settings.savedVersion >= context.version) {
        ++settings.useCount;
        return;
    }
    settings.crashes = 0;
    settings.useCount = known ? 1 : settings.useCount + 1;
    settings.lastUpdateCheck = context.now;
}

}  // namespace kelvane
