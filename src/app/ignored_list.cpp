#include "app/ignored_list.h"

#include <algorithm>

#include "app/list_section.h"
#include "app/settings_lists.h"
#include "base/byte_stream.h"
#include "base/crc32.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::u16string_view ignoredSection = u"Ignored pairs";
constexpr std::u16string_view groupPart = u"Group";
constexpr std::u16string_view whenPart = u"When";
constexpr std::uint16_t formatVersion = 1;
constexpr std::size_t longestBlock = 32'000;  // an INI file ends below 32 KiB
constexpr std::size_t longestPath = 0xFFFF;

void writeFile(ByteWriter& writer, const IgnoredFile& file)
{
    writer.number(file.identity.volume);
    writer.number(file.identity.index);
    writer.number(file.size.bytes);
    writer.number(file.digest.low);
    writer.number(file.digest.high);
    writer.number(static_cast<std::uint16_t>(file.path.size()));
    writer.text(file.path);
}

std::string textOf(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<IgnoredFile> readFile(ByteReader& reader)
{
    std::uint64_t numbers[5] = {};
    for (std::uint64_t& number : numbers) {
        const auto read = reader.number<std::uint64_t>();
        if (!read)
            return std::nullopt;
        number = *read;
    }
    const auto length = reader.number<std::uint16_t>();
    const auto path = length ? reader.bytes(*length) : std::nullopt;
    if (!path)
        return std::nullopt;
    return IgnoredFile{{numbers[0], numbers[1]}, {numbers[2]}, {numbers[3], numbers[4]}, textOf(*path)};
}

IgnoredGroup readGroup(const SettingsNode& node, std::size_t number, IgnoredGroup group)
{
    std::vector<std::byte> when;
    static_cast<void>(node.readBinary(when, entryName(whenPart, number)));  // missing: unknown
    group.when = timeOfBlock(when).value_or(FileTime{});
    return group;
}

std::u16string shown(const IgnoredGroup& group)
{
    std::u16string line = toUtf16(toIso8601(group.when)) + u":";
    for (const IgnoredFile& file : group.files)
        line += (&file == &group.files.front() ? u" " : u" | ") + toUtf16(file.path);
    return line;
}

}  // namespace

std::vector<std::byte> blockOfIgnored(const IgnoredGroup& group)
{
    ByteWriter writer;
    writer.number(formatVersion);
    writer.number(static_cast<std::uint16_t>(group.files.size()));
    for (const IgnoredFile& file : group.files) {
        if (file.path.size() > longestPath || writer.size() > longestBlock)
            return {};
        writeFile(writer, file);
    }
    writer.number(crc32(writer.written()));
    const bool fits = group.files.size() > 1 && writer.size() <= longestBlock;
    return fits ? writer.take() : std::vector<std::byte>{};
}

std::optional<IgnoredGroup> ignoredOfBlock(std::span<const std::byte> block)
{
    if (block.size() < sizeof(std::uint32_t) || block.size() > longestBlock)
        return std::nullopt;
    const auto body = block.first(block.size() - sizeof(std::uint32_t));
    ByteReader sum(block.subspan(body.size()));
    ByteReader reader(body);
    if (sum.number<std::uint32_t>() != crc32(body) || reader.number<std::uint16_t>() != formatVersion)
        return std::nullopt;
    IgnoredGroup group;
    for (std::uint32_t left = reader.number<std::uint16_t>().value_or(0); left > 0; --left) {
        auto file = readFile(reader);
        if (!file)
            return std::nullopt;
        group.files.push_back(std::move(*file));
    }
    if (group.files.size() < 2 || !reader.atEnd())
        return std::nullopt;
    return group;
}

void readIgnoredPairs(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    const SettingsNode node(root, ignoredSection, SettingsAccess::reading);
    for (const std::size_t number : entryNumbers(node, groupPart)) {
        std::vector<std::byte> block;
        if (settings.ignoredGroups.size() == mostIgnoredGroups)
            break;
        if (node.readBinary(block, entryName(groupPart, number)) != SettingsCode::done)
            continue;
        if (auto group = ignoredOfBlock(block))
            settings.ignoredGroups.push_back(readGroup(node, number, std::move(*group)));
    }
}

std::size_t storedDeclarations(const SettingsRoot& root)
{
    const SettingsNode node(root, ignoredSection, SettingsAccess::reading);
    return entryNumbers(node, groupPart).size();
}

// The section is there only as long as it has entries.
SettingsCode writeIgnoredPairs(const SettingsRoot& root, const Settings& settings)
{
    if (settings.ignoredGroups.empty())
        return root.store->deleteSection(joinSettingsPath(root.location.keyPath, ignoredSection));
    ListWriter writer(root, ignoredSection);
    for (std::size_t number = 0; number < std::min(settings.ignoredGroups.size(), mostIgnoredGroups); ++number) {
        const IgnoredGroup& group = settings.ignoredGroups[number];
        const std::vector<std::byte> block = blockOfIgnored(group);
        if (block.empty())
            continue;
        writer.writeBlock(entryName(groupPart, number), block);
        if (group.when != FileTime{})
            writer.writeBlock(entryName(whenPart, number), blockOfTime(group.when));
    }
    return writer.finish();
}

std::vector<std::u16string> showIgnoredPairs(const Settings& settings)
{
    std::vector<std::u16string> lines;
    for (const IgnoredGroup& group : settings.ignoredGroups)
        lines.push_back(shown(group));
    return lines;
}

}  // namespace kelvane
