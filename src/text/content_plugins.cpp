#include "text/content_plugins.h"

#include <algorithm>
#include <functional>

#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr int mostBreakdowns = 10;

// In a name of a property dots part the words, and commas part one name from the next.
std::string wordOfName(std::string_view text)
{
    std::string word = displayText(text);
    for (char& unit : word)
        if (static_cast<unsigned char>(unit) < 0x20 || unit == '.' || unit == ',' || unit == ':' || unit == '|')
            unit = '_';
    return word;
}

// FNV-1a (Fowler, Noll and Vo), 64 bits, from a start of one's choice.
std::uint64_t digest(std::string_view text, std::uint64_t start)
{
    std::uint64_t value = start;
    for (const char unit : text)
        value = (value ^ static_cast<unsigned char>(unit)) * 0x100000001B3;
    return value;
}

// A GUID of version 8, "custom" (RFC 9562).
FormatId formatOf(std::string_view name)
{
    const std::uint64_t high = digest(name, 0xCBF29CE484222325), low = digest(name, ~std::uint64_t{0xCBF29CE484222325});
    FormatId id{static_cast<std::uint32_t>(high >> 32),
                static_cast<std::uint16_t>(high >> 16),
                static_cast<std::uint16_t>((high & 0x0FFF) | 0x8000),
                {}};
    for (std::size_t i = 0; i < id.data4.size(); ++i)
        id.data4[i] = static_cast<std::uint8_t>(low >> (8 * i));
    id.data4[0] = static_cast<std::uint8_t>((id.data4[0] & 0x3F) | 0x80);
    return id;
}

template <class Named>
std::string unusedName(std::string name, const std::vector<Named>& others)
{
    const auto used = [&](const std::string& wanted) {
        return std::any_of(others.begin(), others.end(), [&](const Named& other) { return other.name == wanted; });
    };
    std::string free = name;
    for (int number = 2; used(free); ++number)
        free = name + '_' + std::to_string(number);
    return free;
}

std::string shown(const std::filesystem::path& path)
{
    return displayText(bytesFromNative(path.native()));
}

}  // namespace

ContentPlugins::ContentPlugins(std::unique_ptr<PluginAccess> access, const std::vector<ContentPluginEntry>& entries,
                               std::uint32_t characters, const CancelFlag& cancel)
    : access_(std::move(access)), characters_(characters)
{
    for (const ContentPluginEntry& entry : entries) {
        if (cancel.cancelled())
            return;
        auto description = access_->describe(entry.path, cancel);
        if (!description)
            complain(filledText(TextId::pluginRefused, {shown(entry.path), description.error().detail}));
        else if (description->fields.empty())
            complain(filledText(TextId::pluginRefused, {shown(entry.path), filledText(TextId::pluginWithoutFields)}));
        else
            add(entry, *std::move(description));
    }
}

void ContentPlugins::add(const ContentPluginEntry& entry, PluginDescription description)
{
    ListedPlugin plugin;
    plugin.path = entry.path;
    plugin.name = unusedName(wordOfName(bytesFromNative(entry.path.stem().native())), plugins_);
    plugin.detect = DetectString(entry.detect.empty() ? description.detect : entry.detect);
    plugin.format = formatOf(plugin.name);
    for (PluginField& field : description.fields) {
        field.name = unusedName(wordOfName(field.name), plugin.fields);
        plugin.fields.push_back(std::move(field));
    }
    plugins_.push_back(std::move(plugin));
    health_.push_back(std::make_unique<Health>());
}

void ContentPlugins::complain(std::string line)
{
    const std::lock_guard lock(mutex_);
    complaints_.push_back(std::move(line));
}

std::vector<std::string> ContentPlugins::takeComplaints()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(complaints_, {});
}

bool ContentPlugins::admits(std::size_t plugin, const ShellItem& item) const
{
    const bool file = item.inFileSystem() && item.info().kind == FileKind::regular;
    return file && !health_[plugin]->givenUp && plugins_[plugin].detect.admits(nameBytes(item.name()));
}

void ContentPlugins::note(std::size_t plugin, bool brokeDown)
{
    Health& health = *health_[plugin];
    if (!brokeDown)
        health.breakdowns = 0;
    else if (++health.breakdowns >= mostBreakdowns && !health.givenUp.exchange(true))
        complain(filledText(TextId::pluginGivenUp, {shown(plugins_[plugin].path), std::to_string(mostBreakdowns)}));
}

RawValue ContentPlugins::value(std::size_t plugin, std::uint32_t field, const ShellItem& item)
{
    if (!admits(plugin, item))
        return {};
    auto value = access_->value({plugins_[plugin].path, item.path(), field}, CancelFlag());
    note(plugin, !value);
    return value ? *std::move(value) : RawValue{};
}

bool ContentPlugins::mayRead(const ShellItem& item) const
{
    for (std::size_t plugin = 0; plugin < plugins_.size(); ++plugin) {
        const auto& fields = plugins_[plugin].fields;
        if (admits(plugin, item) && std::any_of(fields.begin(), fields.end(), std::mem_fn(&PluginField::isFullText)))
            return true;
    }
    return false;
}

// The first text that one of them has; otherwise the last thing that went wrong.
ExtractedDocument ContentPlugins::extract(const ShellItem& item, const CancelFlag& cancel)
{
    ExtractedDocument best;
    for (std::size_t plugin = 0; plugin < plugins_.size(); ++plugin) {
        for (const PluginField& field : plugins_[plugin].fields) {
            if (!field.isFullText() || cancel.cancelled() || !admits(plugin, item))
                continue;
            ExtractedDocument found =
                access_->fullText({plugins_[plugin].path, item.path(), field.number}, characters_, cancel);
            note(plugin, found.outcome == TextOutcome::crashed || found.outcome == TextOutcome::timedOut);
            if (found.outcome == TextOutcome::extracted)
                return found;
            if (found.outcome != TextOutcome::unknownFormat)
                best = std::move(found);
        }
    }
    if (cancel.cancelled())
        best.outcome = TextOutcome::cancelled;
    return best;
}

}  // namespace kelvane
