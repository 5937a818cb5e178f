#include "ui/options/make_editor.h"

#include <algorithm>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/options/choice_editors.h"
#include "ui/options/list_editor.h"
#include "ui/options/value_editors.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr std::u16string_view categoryKey = u"nDefCategory";
constexpr std::u16string_view tipsKey = u"nTipOfTheDay";  // a number by its name, a tick by its meaning
constexpr std::u16string_view maskKey = u"szFileCountRule";

QString labelOf(const SettingRow& row)
{
    return shown(row.label != TextId{} ? row.label : row.meaning);
}

SettingAccess<std::uint32_t> numberAccess(const NumberRule& rule, const SettingsContext& context)
{
    return {[&rule](const Settings& settings) { return storedNumber(rule, settings); },
            [&rule, context](Settings& settings, const std::uint32_t& value) {
                setNumber(rule, acceptedNumber(rule, value, context), settings);
            }};
}

SettingAccess<bool> tickAccess(const NumberRule& rule)
{
    return {[&rule](const Settings& settings) { return storedNumber(rule, settings) != 0; },
            [&rule](Settings& settings, const bool& on) { setNumber(rule, on ? 1 : 0, settings); }};
}

QStringList categoryNames(const Settings& settings)
{
    QStringList names;
    for (const FileCategory& category : settings.fileTypes)
        names.push_back(toQt(category.name));
    return names;
}

OptionEditor* numberEditor(const SettingRow& row, const NumberRule& rule, const SettingsContext& context)
{
    if (std::holds_alternative<bool Settings::*>(rule.field) || row.key == tipsKey)
        return new TickEditor(labelOf(row), tickAccess(rule));
    const SettingAccess<std::uint32_t> access = numberAccess(rule, context);
    if (row.key == categoryKey)
        return new ChoiceEditor(categoryNames, access);
    if (row.key.starts_with(u"rgb"))
        return new ColorEditor(access);
    if (row.key.starts_with(u"bin"))
        return new BitsEditor(access);
    return new NumberEditor(row, access);
}

OptionEditor* textEditor(const SettingRow& row, const TextRule& rule, const SettingsContext& context)
{
    const bool isMask = row.key == maskKey;
    SettingAccess<std::u16string> access{[&rule](const Settings& settings) { return storedText(rule, settings); },
                                         [&rule, context, isMask](Settings& settings, const std::u16string& text) {
                                             setText(rule, text, context, settings);
                                             if (isMask && !settings.fileTypes.empty())  // the last category goes by it
                                                 settings.fileTypes.back().masks =
                                                     toQt(context.folding.lower(settings.folderMask)).toStdString();
                                         }};
    const bool isList = rule.form == TextForm::list || rule.form == TextForm::lowerCaseList;
    const bool isFile = rule.form == TextForm::besideProgram || rule.form == TextForm::programToStart;
    return new TextEditor(std::move(access), isList, isFile);
}

QStringList interfaceModes(const Settings&)
{
    return {shown(say::interfaceModeBeginner), shown(say::interfaceModeStandard), shown(say::interfaceModeAdvanced)};
}

constexpr InterfaceMode modes[] = {InterfaceMode::beginner, InterfaceMode::standard, InterfaceMode::advanced};

}  // namespace

OptionEditor* makeEditor(const SettingRow& row, const SettingsContext& context)
{
    if (const auto* rule = std::get_if<NumberRule>(&row.rule))
        return numberEditor(row, *rule, context);
    if (const auto* rule = std::get_if<TextRule>(&row.rule))
        return textEditor(row, *rule, context);
    if (const auto* rule = std::get_if<BlockRule>(&row.rule))
        return new FixedText(rule->show);
    return new ListEditor(*findListSpec(row.key));
}

OptionEditor* makeEditor(const SettingBit& bit)
{
    return new TickEditor(shown(bit.label), {[&bit](const Settings& settings) { return bit.isTicked(settings); },
                                             [&bit](Settings& settings, const bool& on) { bit.tick(settings, on); }});
}

OptionEditor* makeInterfaceModeEditor()
{
    return new ChoiceEditor(
        interfaceModes,
        {[](const Settings& settings) {
             const auto* const mode = std::find(std::begin(modes), std::end(modes), interfaceModeOf(settings));
             return static_cast<std::uint32_t>(mode - std::begin(modes));
         },
         [](Settings& settings, const std::uint32_t& place) { setInterfaceMode(settings, modes[place % 3]); }});
}

}  // namespace kelvane
