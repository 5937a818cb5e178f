#include "cli/options.h"

#include <array>
#include <charconv>

#include "base/filled_text.h"
#include "base/words.h"
#include "cli/choices.h"

namespace kelvane {
namespace {

constexpr std::array categories = {
    Choice<Category>{"audio", Category::audio},         Choice<Category>{"video", Category::video},
    Choice<Category>{"documents", Category::documents}, Choice<Category>{"images", Category::images},
    Choice<Category>{"ebooks", Category::ebooks},       Choice<Category>{"all", Category::custom},
};
constexpr std::array outputFormats = {
    Choice<OutputFormat>{"text", OutputFormat::text},
    Choice<OutputFormat>{"json", OutputFormat::json},
    Choice<OutputFormat>{"csv", OutputFormat::csv},
    Choice<OutputFormat>{"null", OutputFormat::null},
};
constexpr std::span reportFormats = std::span(outputFormats).first(2);
constexpr std::array progressModes = {
    Choice<ProgressMode>{"auto", ProgressMode::automatic},
    Choice<ProgressMode>{"always", ProgressMode::always},
    Choice<ProgressMode>{"never", ProgressMode::never},
};
constexpr std::uint64_t mostThreads = 256;

std::optional<std::uint64_t> parseNumber(std::string_view text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

Error outOfRange(std::string_view option, std::string_view typed, std::uint64_t least, std::uint64_t most)
{
    return invalid(filledText(TextId::optionTakesNumber, {option, std::to_string(least), std::to_string(most), typed}));
}

// An option that was not given keeps its default.
template <class T>
Status readNumber(const char* option, std::string_view typed, std::uint64_t least, std::uint64_t most, T& value)
{
    if (typed.empty())
        return {};
    const auto number = parseNumber(typed);
    if (!number || *number < least || *number > most)
        return outOfRange(option, typed, least, most);
    value = static_cast<T>(*number);
    return {};
}

// A single character means "every file" to a scan definition; "c" as it is meant here is written "*.c" there.
std::string definitionMasks(const std::string& typed)
{
    return typed.size() == 1 && typed != "*" ? "*." + typed : typed;
}

Status readFiles(const RawOptions& raw, CScanNode& definition)
{
    const auto category = choose<Category>(TextId::unknownCategory, raw.category, categories);
    if (!category)
        return category.error();
    if (!raw.masks.empty() && splitWords(raw.masks, ',').empty())
        return invalid(filledText(TextId::masksNeedOne));
    definition.setCategory(*category);
    definition.masks = definitionMasks(raw.masks);
    definition.set(scan_flag::ignoreSmall, raw.ignoreSmall);
    definition.set(scan_flag::subfolders, !raw.noSubfolders);
    definition.set(scan_flag::protect, !raw.noProtect);
    definition.set(scan_flag::skipLinks, !raw.followLinks);
    return {};
}

Status readMinSize(const RawOptions& raw, CScanNode& definition)
{
    if (raw.minSize.empty())
        return {};
    const auto smallest = parseSize(raw.minSize);
    if (!smallest)
        return invalid(filledText(TextId::minSizeTakes, {raw.minSize}));
    definition.set(scan_flag::skipEmpty, *smallest > 0);
    if (*smallest > 1)
        definition.sizeRange = std::to_string(*smallest) + '-';
    return {};
}

Status readMatch(const RawOptions& raw, CScanNode& definition)
{
    if (raw.content && raw.noContent)
        return invalid(filledText(TextId::optionsExclude, {"--content", "--no-content"}));
    const bool anyProperty = !splitWords(raw.match, ',').empty();
    if (raw.noContent && !anyProperty)
        return invalid(filledText(TextId::nothingToCompare));
    definition.properties = raw.match;
    definition.set(scan_flag::contents, raw.content || (!raw.noContent && !anyProperty));
    definition.set(scan_flag::sameType, raw.sameType);
    definition.set(scan_flag::fuzzy, !raw.similar.empty());
    return readNumber("--similar", raw.similar, 1, 100, definition.similarity);
}

void readEngineFlags(const RawOptions& raw, EngineOptions& options)
{
    if (raw.followLinks)
        options.flags |= option_flag::followJunctions;
    if (raw.archives)
        options.flags |= option_flag::enterVirtualFolders;
    if (raw.lowPriority)
        options.flags |= option_flag::lowPriority;
    options.exhaustive = raw.exhaustive;
    options.sizesOnDisk = raw.fileSizes;
    options.secondLook = options.secondLook && !raw.scoreOnly;
}

Status readRunning(const RawOptions& raw, ScanRequest& request)
{
    if (auto read = readNumber("--threads", raw.threads, 1, mostThreads, request.options.threads); !read)
        return read;
    std::uint64_t seed = 0;
    if (auto read = readNumber("--seed", raw.seed, 0, UINT64_MAX, seed); !read)
        return read;
    if (!raw.seed.empty())
        request.seed = seed;
    readEngineFlags(raw, request.options);
    request.options.extraction.workers = request.options.threads;
    request.options.media.workers = request.options.threads;
    request.useCache = !raw.noCache;
    return {};
}

Status readOutput(const RawOptions& raw, ScanRequest& request)
{
    const auto progress = chooseProgress(raw.progress);
    if (!progress)
        return progress.error();
    const auto format = chooseFormat(raw.format, raw.json);
    if (!format)
        return format.error();
    request.progress = *progress;
    request.format = *format;
    request.verbose = raw.verbose;
    return {};
}

Result<OutputFormat> formatAmong(std::span<const Choice<OutputFormat>> formats, std::string_view format, bool json)
{
    if (format.empty())
        return json ? OutputFormat::json : OutputFormat::text;
    const auto chosen = choose<OutputFormat>(TextId::unknownFormat, format, formats);
    if (chosen && json && *chosen != OutputFormat::json)
        return invalid(filledText(TextId::optionsExclude, {"--json", "--format " + std::string(format)}));
    return chosen;
}

}  // namespace

Result<OutputFormat> chooseFormat(std::string_view format, bool json)
{
    return formatAmong(outputFormats, format, json);
}

Result<OutputFormat> chooseReportFormat(std::string_view format, bool json)
{
    return formatAmong(reportFormats, format, json);
}

Result<ScanRequest> makeRequest(const RawOptions& raw, const std::vector<std::string>& roots, const PathRules& paths,
                                const EngineOptions& settings)
{
    ScanRequest request;
    request.options = settings;
    request.definition.roots = paths.joinRoots(roots);
    for (const auto& read : {readFiles(raw, request.definition), readMinSize(raw, request.definition),
                             readMatch(raw, request.definition), readRunning(raw, request), readOutput(raw, request)}) {
        if (!read)
            return read.error();
    }
    return request;
}

Result<ProgressMode> chooseProgress(std::string_view word)
{
    return choose<ProgressMode>(TextId::unknownProgressMode, word, progressModes);
}

std::string_view categoryWord(Category category)
{
    for (const auto& choice : categories) {
        if (choice.value == category)
            return choice.word;
    }
    return {};
}

}  // namespace kelvane
