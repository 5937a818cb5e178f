#include "app/settings_transfer.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>

#include "app/settings_table.h"
#include "app/text_lists.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr int deepest = 8;  // sections inside one another; no program made deeper ones
constexpr std::u16string_view numberPrefixes[] = {u"b", u"n", u"ms", u"rgb", u"bin"};

bool isNamedLike(std::u16string_view name, std::u16string_view prefix)
{
    return name.starts_with(prefix) && name.size() > prefix.size() && (name[prefix.size()] < u'a');
}

// An INI file holds texts only: a value that nobody here knows is a number when it is named and written like one.
std::optional<std::uint32_t> numberIn(std::u16string_view name, std::u16string_view text)
{
    const auto isPrefix = [&](std::u16string_view prefix) { return isNamedLike(name, prefix); };
    const std::string digits = toUtf8(text);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    const bool fits = number >= INT32_MIN && number <= INT32_MAX;
    const bool named = std::any_of(std::begin(numberPrefixes), std::end(numberPrefixes), isPrefix);
    return named && whole && fits ? std::optional(static_cast<std::uint32_t>(number)) : std::nullopt;
}

class Transfer {
public:
    Transfer(const SettingsRoot& from, const SettingsRoot& to, const SettingsContext& context, TransferReport& report)
        : from_(from), to_(to), context_(context), report_(report)
    {
    }

    SettingsCode run()
    {
        for (const SettingRow& row : settingsTable()) {
            known_.insert(lowerKey(row.key));
            if (std::holds_alternative<ListRule>(row.rule))
                copyList(row.key, std::get<ListRule>(row.rule));
        }
        known_.insert(lowerKey(generalSection));
        copyGeneral();
        copyRest(SettingsNode(from_, {}, SettingsAccess::reading), {}, 0);
        return code_;
    }

private:
    [[nodiscard]] bool failed() const { return code_ != SettingsCode::done; }

    void skip(std::u16string_view section, std::u16string_view name, std::string reason)
    {
        report_.skipped.push_back({joinSettingsPath(section, name), std::move(reason)});
    }

    void copyList(std::u16string_view key, const ListRule& rule)
    {
        const std::u16string section = listSection(key);
        const std::size_t stored = SettingsNode(from_, section, SettingsAccess::reading).valueNames().size();
        if (stored == 0 || failed())
            return;
        Settings list;
        rule.read(from_, context_, list);
        code_ = rule.write(to_, list);
        report_.values += stored;
        if (SettingsNode(to_, section, SettingsAccess::reading).valueNames().size() != stored)
            skip(section, {}, "has damaged or foreign entries, which were left out");
    }

    void copyGeneral()
    {
        const SettingsNode from(from_, generalSection, SettingsAccess::reading);
        if (!from.isOpen() || failed())
            return;
        SettingsNode to(to_, generalSection, SettingsAccess::writing);
        code_ = to.isOpen() ? code_ : SettingsCode::noKey;
        for (const std::u16string& name : from.valueNames()) {
            if (failed())
                return;
            if (const SettingRow* row = findSetting(name))
                copyKnown(from, to, *row);
            else
                copyUnknown(from, to, name);
        }
        copyRest(from, generalSection, 1);
    }

    void copyKnown(const SettingsNode& from, SettingsNode& to, const SettingRow& row)
    {
        if (row.key == persistenceKey || std::holds_alternative<ListRule>(row.rule))
            return;
        if (std::holds_alternative<NumberRule>(row.rule))
            copyNumber(from, to, row.key);
        else if (std::holds_alternative<TextRule>(row.rule))
            copyText(from, to, row.key);
        else
            copyBlock(from, to, row.key);
    }

    // Each answers whether the value was of its kind.
    bool copyNumber(const SettingsNode& from, SettingsNode& to, std::u16string_view name, bool only = true)
    {
        std::uint32_t number = 0;
        return wrote(from.readNumber(name, number), from, name, only, [&] { return to.writeNumber(number, name); });
    }

    bool copyText(const SettingsNode& from, SettingsNode& to, std::u16string_view name, bool only = true)
    {
        std::u16string text;
        return wrote(from.readString(text, name), from, name, only, [&] { return to.writeString(text, name); });
    }

    bool copyBlock(const SettingsNode& from, SettingsNode& to, std::u16string_view name, bool only = true)
    {
        std::vector<std::byte> block;
        return wrote(from.readBinary(block, name), from, name, only,
                     [&] { return to.writeBinary(block.data(), name, block.size()); });
    }

    template <class Write>
    bool wrote(SettingsCode read, const SettingsNode& from, std::u16string_view name, bool only, Write&& write)
    {
        if (read != SettingsCode::done) {
            if (only)
                skip(from.path(), name, "is damaged or of another kind");
            return false;
        }
        const SettingsCode code = write();
        if (code == SettingsCode::tooLong)
            skip(from.path(), name, "is too long for the new place");
        else
            code_ = code;
        ++report_.values;
        return true;
    }

    void copyUnknown(const SettingsNode& from, SettingsNode& to, const std::u16string& name)
    {
        std::u16string text;
        if (from.isIni() && from.readString(text, name) == SettingsCode::done) {
            if (numberIn(name, text))
                copyNumber(from, to, name);
            else if (!isNamedLike(name, u"bin") || !copyBlock(from, to, name, false))
                copyText(from, to, name);
        } else if (!copyNumber(from, to, name, false) && !copyText(from, to, name, false)) {
            copyBlock(from, to, name);
        }
    }

    // The subsections that no row of the table names, with everything below them.
    void copyRest(const SettingsNode& from, const std::u16string_view path, int depth)
    {
        for (const std::u16string& name : from.subsectionNames()) {
            const std::u16string section = joinSettingsPath(path, name);
            if ((depth <= 1 && known_.contains(lowerKey(name))) || failed())
                continue;
            const SettingsNode source(from, name, SettingsAccess::reading);
            SettingsNode target(to_, section, SettingsAccess::writing);
            for (const std::u16string& value : source.valueNames()) {
                if (!failed())
                    copyUnknown(source, target, value);
            }
            if (depth < deepest)
                copyRest(source, section, depth + 1);
        }
    }

    const SettingsRoot& from_;
    const SettingsRoot& to_;
    const SettingsContext& context_;
    TransferReport& report_;
    std::set<std::u16string> known_;  // sections and values, folded
    SettingsCode code_ = SettingsCode::done;
};

}  // namespace

SettingsCode transferSettings(const SettingsRoot& from, const SettingsRoot& to, const SettingsContext& context,
                              TransferReport& report)
{
    return Transfer(from, to, context, report).run();
}

}  // namespace kelvane
