#include "platform/linux/process_maps.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/linux/elf_build_id.h"

namespace kelvane::linux_os {
namespace {

constexpr std::size_t mostModules = 1'000;
constexpr std::string_view deletedMark = " (deleted)";

std::string_view takeWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    return word;
}

std::optional<std::uint64_t> hexadecimal(std::string_view digits)
{
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value) : std::nullopt;
}

// "7f00-7f10 r-xp 00001000 08:01 1234   /usr/lib/x.so"
std::optional<MappedRange> parseLine(std::string_view line)
{
    const std::string_view addresses = takeWord(line);
    const std::string_view rights = takeWord(line);
    const auto offset = hexadecimal(takeWord(line));
    const std::size_t dash = addresses.find('-');
    if (dash == std::string_view::npos || rights.size() < 4 || !offset)
        return std::nullopt;
    const auto start = hexadecimal(addresses.substr(0, dash));
    const auto end = hexadecimal(addresses.substr(dash + 1));
    if (!start || !end || *start >= *end)
        return std::nullopt;
    takeWord(line);  // device
    takeWord(line);  // inode
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return MappedRange{*start, *end, rights[0] == 'r', rights[2] == 'x', *offset, std::string(line)};
}

bool isFile(const MappedRange& range)
{
    return range.path.starts_with('/');
}

std::string withoutMark(std::string path)
{
    if (path.ends_with(deletedMark))
        path.resize(path.size() - deletedMark.size());
    return path;
}

// A file's ranges stand together; between them there may be anonymous ones.
struct MappedFile {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    bool executable = false;
    std::string path;
};

std::vector<MappedFile> filesIn(const std::vector<MappedRange>& ranges)
{
    std::vector<MappedFile> files;
    for (const MappedRange& range : ranges) {
        if (!isFile(range))
            continue;
        if (files.empty() || files.back().path != range.path || range.offset == 0)
            files.push_back({range.start, range.end, range.executable, range.path});
        files.back().end = range.end;
        files.back().executable = files.back().executable || range.executable;
    }
    return files;
}

}  // namespace

std::vector<MappedRange> parseMaps(std::string_view text)
{
    std::vector<MappedRange> ranges;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (auto range = parseLine(line))
            ranges.push_back(std::move(*range));
    }
    return ranges;
}

std::vector<DumpedModule> modulesIn(const std::vector<MappedRange>& ranges, const ProcessReader& reader)
{
    std::vector<DumpedModule> modules;
    for (const MappedFile& file : filesIn(ranges)) {
        if (file.executable && modules.size() < mostModules)
            modules.push_back(
                {file.start, file.end - file.start, withoutMark(file.path), elfBuildId(reader, file.start)});
    }
    const std::string program = withoutMark(reader.program());
    std::stable_partition(modules.begin(), modules.end(),
                          [&](const DumpedModule& module) { return module.path == program; });
    return modules;
}

}  // namespace kelvane::linux_os
