// From stored values to fields and back, by the rules of the table.
#include <algorithm>

#include "app/settings_table.h"
#include "app/text_lists.h"

namespace kelvane {
namespace {

std::int64_t meant(const NumberRule& rule, std::uint32_t stored)
{
    return rule.isSigned ? static_cast<std::int32_t>(stored) : static_cast<std::int64_t>(stored);
}

void put(bool& field, std::uint32_t stored, std::uint32_t /*unit*/)
{
    field = stored != 0;
}

void put(PersistenceMode& field, std::uint32_t stored, std::uint32_t /*unit*/)
{
    field = static_cast<PersistenceMode>(stored);
}

void put(FileSize& field, std::uint32_t stored, std::uint32_t unit)
{
    field.bytes = std::uint64_t{stored} * unit;
}

void put(std::int64_t& field, std::uint32_t stored, std::uint32_t unit)
{
    field = std::int64_t{stored} * unit;
}

void put(std::uint32_t& field, std::uint32_t stored, std::uint32_t /*unit*/)
{
    field = stored;
}

void put(std::int32_t& field, std::uint32_t stored, std::uint32_t /*unit*/)
{
    field = static_cast<std::int32_t>(stored);
}

template <class Field>
std::int64_t number(Field field)
{
    return static_cast<std::int64_t>(field);
}

std::int64_t number(FileSize field)
{
    return static_cast<std::int64_t>(field.bytes);
}

// A bare name is one without any separator, of this system or of Windows.
bool isBareName(std::u16string_view name)
{
    return name.find_first_of(u"\\/") == std::u16string_view::npos;
}

std::u16string besideProgram(std::u16string_view name, const SettingsContext& context)
{
    if (name.empty() || !isBareName(name))
        return std::u16string(name);
    return textOfPath(context.places.programFolder() / pathOfText(name));
}

// Windows has its notepad always; elsewhere the desktop decides what opens a text.
std::u16string viewerOf(const SettingsContext& context)
{
    for (const char* name : {"notorix2.exe", "notepad.exe"}) {
        if (const auto found = context.facts.installedProgram(name))
            return textOfPath(*found);
    }
    return context.windowsRules ? u"notepad.exe" : u"";
}

std::u16string formed(const TextRule& rule, std::u16string_view stored, const SettingsContext& context)
{
    switch (rule.form) {
    case TextForm::neverEmpty:
        return std::u16string(stored.empty() ? rule.fallback : stored);
    case TextForm::lowerCaseList:
        return context.folding.lower(stored);
    case TextForm::besideProgram:
        return besideProgram(stored, context);
    case TextForm::programToStart:
        return stored.empty() ? viewerOf(context) : besideProgram(stored, context);
    case TextForm::plain:
    case TextForm::list:
        break;
    }
    return std::u16string(stored);
}

}  // namespace

std::uint32_t defaultNumber(const NumberRule& rule, const SettingsContext& context)
{
    return rule.computed != nullptr ? rule.computed(context) : rule.fallback;
}

std::uint32_t acceptedNumber(const NumberRule& rule, std::uint32_t stored, const SettingsContext& context)
{
    const std::int64_t value = meant(rule, stored);
    if (rule.clamp == Clamp::none || (value >= rule.least && value <= rule.most))
        return stored;
    switch (rule.clamp) {
    case Clamp::intoRange:
        return static_cast<std::uint32_t>(std::clamp(value, rule.least, rule.most));
    case Clamp::belowIsZero:
        return 0;
    default:
        return defaultNumber(rule, context);
    }
}

void setNumber(const NumberRule& rule, std::uint32_t stored, Settings& settings)
{
    std::visit([&](auto member) { put(settings.*member, stored, rule.unit); }, rule.field);
}

std::uint32_t storedNumber(const NumberRule& rule, const Settings& settings)
{
    const std::int64_t value = std::visit([&](auto member) { return number(settings.*member); }, rule.field);
    return static_cast<std::uint32_t>(value / rule.unit);
}

void setText(const TextRule& rule, std::u16string_view stored, const SettingsContext& context, Settings& settings)
{
    const std::u16string text = formed(rule, stored, context);
    if (const auto* single = std::get_if<std::u16string Settings::*>(&rule.field))
        settings.*(*single) = text;
    else
        settings.*std::get<std::vector<std::u16string> Settings::*>(rule.field) = splitTexts(text);
}

std::u16string storedText(const TextRule& rule, const Settings& settings)
{
    if (const auto* single = std::get_if<std::u16string Settings::*>(&rule.field))
        return settings.*(*single);
    return joinTexts(settings.*std::get<std::vector<std::u16string> Settings::*>(rule.field));
}

}  // namespace kelvane
