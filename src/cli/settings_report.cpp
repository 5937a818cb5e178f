#include "cli/settings_report.h"

#include <algorithm>
#include <ostream>

#include "app/text_lists.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "cli/printable.h"
#include "cli/value_json.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view pageWords[] = {"bookkeeping", "general",        "view",    "scanning",
                                          "comparing",   "textExtraction", "cleanUp", "notices"};
constexpr std::size_t widestValue = 40;

std::string numberText(std::uint32_t number, const SettingRow& row)
{
    const auto& rule = std::get<NumberRule>(row.rule);
    if (rule.isSigned)
        return std::to_string(static_cast<std::int32_t>(number));
    if (!isBits(row))
        return std::to_string(number);
    char text[11];
    std::snprintf(text, sizeof text, "0x%X", number);
    return text;
}

// What a setting is, or would be without anything stored.
struct ShownValue {
    std::string text;
    Json json;
};

ShownValue shown(const SettingRow& row, const Settings& settings)
{
    if (const auto* rule = std::get_if<NumberRule>(&row.rule)) {
        const std::uint32_t number = storedNumber(*rule, settings);
        const Json json = rule->isSigned ? Json(static_cast<std::int32_t>(number)) : Json(number);
        return {numberText(number, row), json};
    }
    std::u16string text;
    if (const auto* rule = std::get_if<TextRule>(&row.rule))
        text = storedText(*rule, settings);
    else
        text = std::get<BlockRule>(row.rule).show(settings);
    return {toUtf8(text), toUtf8(text)};
}

ShownValue shownDefault(const SettingRow& row, const SettingsContext& context)
{
    Settings settings;
    if (const auto* number = std::get_if<NumberRule>(&row.rule))
        setNumber(*number, defaultNumber(*number, context), settings);
    else if (const auto* text = std::get_if<TextRule>(&row.rule))
        setText(*text, text->fallback, context, settings);
    else
        return {};
    return shown(row, settings);
}

bool isStored(std::u16string_view key, const SettingsNode& general)
{
    const std::vector<std::u16string> names = general.valueNames();
    return std::any_of(names.begin(), names.end(),
                       [&](const std::u16string& name) { return lowerKey(name) == lowerKey(key); });
}

Json rowJson(const SettingRow& row, CRegistryAccess& settings, const SettingsNode& general)
{
    Json json{{"key", toUtf8(row.key)}};
    if (const auto* list = std::get_if<ListRule>(&row.rule)) {
        Json entries = Json::array();
        for (const std::u16string& entry : list->show(settings.settings()))
            entries.push_back(toUtf8(entry));
        json["entries"] = std::move(entries);
    } else {
        json["value"] = shown(row, settings.settings()).json;
        json["default"] = shownDefault(row, settings.context()).json;
        json["stored"] = isStored(row.key, general);
    }
    if (const auto* rule = std::get_if<NumberRule>(&row.rule); rule != nullptr && rule->clamp != Clamp::none)
        json["range"] = {{"least", rule->least}, {"most", rule->most}};
    json["page"] = pageWords[static_cast<std::size_t>(row.page)];
    json["meaning"] = toUtf8(text(row.meaning));
    return json;
}

Json locationJson(const SettingsLocation& location)
{
    if (!location.isIni())
        return {{"kind", "registry"}, {"path", toUtf8(location.keyPath)}};
    Json json{{"kind", "ini"}};
    addPath(json, bytesFromNative(location.iniPath.native()));
    return json;
}

std::string padded(std::string text, std::size_t width)
{
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };  // of UTF-8
    const auto shown = text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
    text.append(width - std::min(width, shown), ' ');
    return text;
}

std::string remark(const SettingRow& row, const std::string& value, const SettingsContext& context)
{
    const std::string standard = shownDefault(row, context).text;
    std::string remark = standard == value || standard.empty() ? "" : filledText(TextId::settingDefault, {standard});
    if (const auto* rule = std::get_if<NumberRule>(&row.rule); rule != nullptr && !rangeText(*rule).empty())
        remark += (remark.empty() ? "" : "; ") + rangeText(*rule);
    return remark.empty() ? "" : " (" + remark + ')';
}

void writeListLine(const SettingRow& row, const Settings& settings, std::size_t width, std::ostream& out)
{
    const std::size_t entries = std::get<ListRule>(row.rule).show(settings).size();
    const std::string count = countedText(entries, TextId::oneEntry, TextId::manyEntries);
    out << padded(toUtf8(row.key), width) << padded(count, widestValue / 4) << "  " << toUtf8(text(row.meaning))
        << '\n';
}

}  // namespace

std::string placeText(const SettingsLocation& location)
{
    if (location.isIni())
        return bytesFromNative(location.iniPath.native());
    return filledText(TextId::placeInRegistry, {toUtf8(location.keyPath)});
}

bool isBits(const SettingRow& row)
{
    return row.key.starts_with(u"bin") || row.key.starts_with(u"rgb");
}

std::string rangeText(const NumberRule& rule)
{
    if (rule.clamp == Clamp::none)
        return {};
    if (rule.most == UINT32_MAX)
        return filledText(rule.clamp == Clamp::belowIsZero ? TextId::rangeZeroOrFrom : TextId::rangeFrom,
                          {std::to_string(rule.least)});
    return filledText(TextId::rangeFromTo, {std::to_string(rule.least), std::to_string(rule.most)});
}

void writeSettingsText(CRegistryAccess& settings, std::ostream& out)
{
    std::size_t width = 0;
    for (const SettingRow& row : settingsTable())
        width = std::max(width, row.key.size() + 2);
    out << printable(filledText(TextId::settingsIn, {placeText(settings.location())})) << "\n\n";
    for (const SettingRow& row : settingsTable()) {
        if (std::holds_alternative<ListRule>(row.rule)) {
            writeListLine(row, settings.settings(), width, out);
            continue;
        }
        const std::string value = shown(row, settings.settings()).text;
        out << padded(toUtf8(row.key), width) << padded(printable(value), widestValue / 4) << "  "
            << toUtf8(text(row.meaning)) << printable(remark(row, value, settings.context())) << '\n';
    }
}

void writeSettingsJson(CRegistryAccess& settings, std::span<const SettingRow* const> rows, std::ostream& out,
                       const RunCacheFigures* cache)
{
    const SettingsNode general(settings.root(), generalSection, SettingsAccess::reading);
    Json values = Json::array();
    Json lists = Json::array();
    for (const SettingRow* row : rows)
        (std::holds_alternative<ListRule>(row->rule) ? lists : values).push_back(rowJson(*row, settings, general));
    Json document{
        {"location", locationJson(settings.location())}, {"settings", std::move(values)}, {"lists", std::move(lists)}};
    if (cache != nullptr)
        document["cache"] = {{"descriptors", cache->values}, {"bytes", cache->bytes}};
    out << dump(document, Layout::indented) << '\n';
}

void writeSettingValue(CRegistryAccess& settings, const SettingRow& row, std::ostream& out)
{
    if (const auto* list = std::get_if<ListRule>(&row.rule)) {
        for (const std::u16string& entry : list->show(settings.settings()))
            out << printable(toUtf8(entry)) << '\n';
        return;
    }
    out << printable(shown(row, settings.settings()).text) << '\n';
}

}  // namespace kelvane
